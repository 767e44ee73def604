// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Failure.h"

#include "GitKit/runner/GitError.h"
#include "app/store/Secrets.h"
#include "app/store/ShownText.h"

#include <QCoreApplication>

#include <new>
#include <stdexcept>
#include <system_error>

namespace plovik {

namespace {

bool isOutOfThreads(const std::exception& thrown)
{
    const auto* const failure = dynamic_cast<const std::system_error*>(&thrown);
    return failure && failure->code() == std::errc::resource_unavailable_try_again;
}

} // namespace

Failure failureOf(const std::exception& thrown)
{
    Failure failure;
    failure.kind = gitkit::errorKindOf(thrown);
    failure.speaker = gitkit::speakerOf(thrown);
    if (failure.kind == gitkit::ErrorKind::notARepository) {
        failure.speaker = gitkit::Speaker::plovik;
        failure.message =
            QCoreApplication::translate("Failure", "This is no repository any more: git finds none in its folder.");
        return failure;
    }
    if (failure.kind == gitkit::ErrorKind::contentsNotHere) {
        failure.speaker = gitkit::Speaker::plovik;
        failure.message = QCoreApplication::translate(
            "Failure", "The contents are not here: this clone fetches them when they are needed.");
        return failure;
    }
    if (dynamic_cast<const std::bad_alloc*>(&thrown) || dynamic_cast<const std::length_error*>(&thrown))
        failure.message = QCoreApplication::translate("Failure", "There is not enough memory for this.");
    else if (isOutOfThreads(thrown))
        failure.message = QCoreApplication::translate(
            "Failure", "The system can start no more threads now. Close other programs and try again.");
    else
        failure.message = withStandIns(withoutSecrets(QString::fromUtf8(thrown.what())));
    return failure;
}

} // namespace plovik
