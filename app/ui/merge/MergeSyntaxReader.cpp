// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/merge/MergeSyntaxReader.h"

#include "app/store/RepositoryStore.h"
#include "app/ui/merge/MergeView.h"

namespace plovik {

using gitkit::MergeSide;

MergeSyntaxReader::MergeSyntaxReader(RepositoryStore& store, MergeView& view)
    : view_(view), base_(store.git(), &highlighted, [this] { sideRead(MergeSide::base, base_); }),
      left_(store.git(), &highlighted, [this] { sideRead(MergeSide::left, left_); }),
      right_(store.git(), &highlighted, [this] { sideRead(MergeSide::right, right_); }),
      result_(store.git(), &highlighted, [this] {
          if (!result_.failure())
              view_.setResultSyntax(*result_.result());
      })
{}

void MergeSyntaxReader::sideRead(MergeSide side, Reading& reading)
{
    if (!reading.failure())
        view_.setSyntax(side, *reading.result());
}

void MergeSyntaxReader::read(Reading& reading, std::string bytes)
{
    reading.askAgain({.file = std::make_shared<const FileLines>(std::move(bytes)), .path = view_.path()});
}

void MergeSyntaxReader::readSides()
{
    const gitkit::MergedSides& sides = *view_.content().sides;
    read(left_, sides.left.bytes());
    read(right_, sides.right.bytes());
    read(base_, sides.base.bytes());
}

void MergeSyntaxReader::readResult() { read(result_, view_.shownResult()); }

} // namespace plovik
