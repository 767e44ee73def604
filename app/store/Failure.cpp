// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Failure.h"

#include "GitKit/runner/GitError.h"
#include "app/store/Secrets.h"

namespace plovik {

Failure failureOf(const std::exception& thrown)
{
    Failure failure;
    failure.kind = gitkit::errorKindOf(thrown);
    failure.message = withoutSecrets(QString::fromUtf8(thrown.what()));
    return failure;
}

} // namespace plovik
