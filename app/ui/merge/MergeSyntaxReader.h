// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/MergedSides.h"
#include "app/store/readers/Latest.h"
#include "app/ui/diff/syntax/SyntaxHighlighter.h"

#include <array>
#include <memory>
#include <string>

namespace plovik {

class MergeView;
class RepositoryStore;

/// Works out the colours of a merge view's code: of its sides, and of its result when that has settled. Main thread; the
/// work is done on the store's worker.
class MergeSyntaxReader {
public:
    /// Both outlive the reader.
    MergeSyntaxReader(RepositoryStore& store, MergeView& view);

    void readSides();
    void readResult();

private:
    using Reading = Latest<SyntaxRequest, std::shared_ptr<const FileSyntax>>;

    void read(Reading& reading, std::string bytes);
    void sideRead(gitkit::MergeSide side, Reading& reading);

    MergeView& view_;
    Reading base_, left_, right_, result_;
};

} // namespace plovik
