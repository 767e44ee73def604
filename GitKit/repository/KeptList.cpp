// SPDX-License-Identifier: GPL-3.0-or-later
// The format: for each file its fields in the order below, each ended by a zero byte, which no path contains. A list of
// index entries begins with their number.
#include "GitKit/repository/KeptList.h"

#include "GitKit/Text.h"

#include <charconv>
#include <limits>
#include <stdexcept>

namespace gitkit {

namespace {

constexpr const char* listName = "list";

class FieldReader {
public:
    explicit FieldReader(std::vector<std::string> fields) : fields_(std::move(fields)) {}

    bool isAtEnd() const { return next_ == fields_.size(); }
    std::string text() { return fields_.at(next_++); }
    int number()
    {
        const std::string digits = text();
        int value = 0;
        if (std::from_chars(digits.data(), digits.data() + digits.size(), value).ec != std::errc())
            throw std::out_of_range("no number");
        return value;
    }
    std::vector<std::string> texts()
    {
        std::vector<std::string> all;
        for (int count = number(); count > 0; --count)
            all.push_back(text());
        return all;
    }

private:
    std::vector<std::string> fields_;
    std::size_t next_ = 0;
};

void add(std::string& fields, std::string_view field) { fields.append(field).push_back('\0'); }

void add(std::string& fields, const std::vector<std::string>& texts)
{
    add(fields, std::to_string(texts.size()));
    for (const std::string& text : texts)
        add(fields, text);
}

KeptFile readFile(FieldReader& fields)
{
    KeptFile file;
    file.path = fields.text();
    file.copy = fields.text();
    file.before = static_cast<FileKind>(fields.number());
    file.after = static_cast<FileKind>(fields.number());
    file.afterIdentity = fields.text();
    file.entriesBefore = fields.texts();
    file.entriesAfter = fields.texts();
    file.isNew = fields.number() != 0;
    file.isIntended = fields.number() != 0;
    return file;
}

} // namespace

std::vector<KeptFile> readKeptList(const std::filesystem::path& folder)
{
    const auto bytes = bytesOf(folder / listName, std::numeric_limits<std::uintmax_t>::max());
    if (!bytes)
        return {};
    try {
        std::vector<KeptFile> files;
        FieldReader fields(splitNul(*bytes));
        while (!fields.isAtEnd())
            files.push_back(readFile(fields));
        return files;
    } catch (const std::out_of_range&) {
        return {};
    }
}

void writeKeptList(const std::filesystem::path& folder, const std::vector<KeptFile>& files)
{
    std::string fields;
    for (const KeptFile& file : files) {
        add(fields, file.path);
        add(fields, file.copy);
        add(fields, std::to_string(static_cast<int>(file.before)));
        add(fields, std::to_string(static_cast<int>(file.after)));
        add(fields, file.afterIdentity);
        add(fields, file.entriesBefore);
        add(fields, file.entriesAfter);
        add(fields, file.isNew ? "1" : "0");
        add(fields, file.isIntended ? "1" : "0");
    }
    putBytes(fields, folder / listName);
}

} // namespace gitkit
