// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/syntax/FileSyntax.h"

namespace plovik {

namespace {

std::string_view withoutReturn(std::string_view line)
{
    return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
}

} // namespace

std::span<const SyntaxRun> FileSyntax::line(int number) const
{
    if (number < 1 || static_cast<std::size_t>(number) > ends_.size())
        return {};
    const auto index = static_cast<std::size_t>(number) - 1;
    const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
    return std::span(runs_).subspan(begin, ends_[index] - begin);
}

std::span<const SyntaxRun> FileSyntax::line(int number, std::string_view bytes) const
{
    const std::span<const SyntaxRun> runs = line(number);
    if (runs.empty() || withoutReturn(file_->line(number)) != withoutReturn(bytes))
        return {};
    return runs;
}

std::size_t FileSyntax::size() const
{
    return file_->bytes().size() + ends_.capacity() * sizeof(ends_[0]) + runs_.capacity() * sizeof(SyntaxRun);
}

void FileSyntax::append(std::span<const SyntaxRun> runs)
{
    runs_.insert(runs_.end(), runs.begin(), runs.end());
    ends_.push_back(static_cast<std::uint32_t>(runs_.size()));
}

} // namespace plovik
