// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/SpellChecker.h"

#include <QDir>
#include <QFile>
#include <QLibrary>
#include <QStandardPaths>
#include <QStringConverter>

#include <array>
#include <optional>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

struct Handle;

/// The functions of the library, which is loaded when it is wanted: without it no word is checked.
struct Hunspell {
    Handle* (*create)(const char* rules, const char* words) = nullptr;
    void (*destroy)(Handle*) = nullptr;
    int (*spell)(Handle*, const char* word) = nullptr;
    int (*suggest)(Handle*, char*** list, const char* word) = nullptr;
    void (*freeList)(Handle*, char*** list, int count) = nullptr;
    const char* (*encoding)(Handle*) = nullptr;

    template <typename Function>
    static bool resolve(QLibrary& library, Function& function, const char* name)
    {
        function = reinterpret_cast<Function>(library.resolve(name));
        return function != nullptr;
    }

    static const Hunspell* loaded()
    {
        static const std::optional<Hunspell> hunspell = []() -> std::optional<Hunspell> {
            QLibrary library(u"hunspell-1.7"_s, 0);
            Hunspell functions;
            if (resolve(library, functions.create, "Hunspell_create") &&
                resolve(library, functions.destroy, "Hunspell_destroy") &&
                resolve(library, functions.spell, "Hunspell_spell") &&
                resolve(library, functions.suggest, "Hunspell_suggest") &&
                resolve(library, functions.freeList, "Hunspell_free_list") &&
                resolve(library, functions.encoding, "Hunspell_get_dic_encoding"))
                return functions;
            return std::nullopt;
        }();
        return hunspell ? &*hunspell : nullptr;
    }
};

class HunspellChecker : public SpellChecker {
public:
    HunspellChecker(const Hunspell& hunspell, Handle* handle)
        : hunspell_(hunspell), handle_(handle), encode_(hunspell.encoding(handle)), decode_(hunspell.encoding(handle))
    {}
    ~HunspellChecker() override { hunspell_.destroy(handle_); }

    bool isRight(const QString& word) const override
    {
        const QByteArray bytes = encode_.encode(word);
        // A word that the dictionary cannot even write is none of its language.
        return encode_.hasError() || hunspell_.spell(handle_, bytes.constData()) != 0;
    }

    QStringList suggestions(const QString& word) const override
    {
        const QByteArray bytes = encode_.encode(word);
        char** list = nullptr;
        const int count = hunspell_.suggest(handle_, &list, bytes.constData());
        QStringList words;
        for (int index = 0; index < count; ++index)
            words.append(decode_.decode(list[index])); // NOLINT(cppcoreguidelines-pro-bounds-pointer-arithmetic)
        hunspell_.freeList(handle_, &list, count);
        return words;
    }

    bool canEncode() const { return encode_.isValid() && decode_.isValid(); }

private:
    const Hunspell& hunspell_;
    Handle* handle_;
    mutable QStringEncoder encode_;
    mutable QStringDecoder decode_;
};

/// Returns the path of a dictionary without its ending; empty when the system has none of that name.
QString dictionary(const QString& name)
{
    QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    folders << u"/usr/share"_s << u"/usr/local/share"_s;
    for (const QString& folder : std::as_const(folders)) {
        for (const char* kind : {"hunspell", "myspell/dicts"}) {
            const QString path = folder + u'/' + QLatin1StringView(kind) + u'/' + name;
            if (QFile::exists(path + u".aff"_s) && QFile::exists(path + u".dic"_s))
                return path;
        }
    }
    return {};
}

} // namespace

std::unique_ptr<SpellChecker> makeSpellChecker(const QLocale& locale)
{
    const QString language = locale.name().section(u'_', 0, 0);
    for (const QString& name : {locale.name(), language, language + u'_' + language.toUpper(), u"en_US"_s, u"en_GB"_s})
    {
        const QString path = dictionary(name);
        if (path.isEmpty())
            continue;
        const Hunspell* const hunspell = Hunspell::loaded();
        Handle* const handle = hunspell ? hunspell->create(QFile::encodeName(path + u".aff"_s).constData(),
                                                           QFile::encodeName(path + u".dic"_s).constData())
                                        : nullptr;
        if (!handle)
            return nullptr;
        auto checker = std::make_unique<HunspellChecker>(*hunspell, handle);
        return checker->canEncode() ? std::move(checker) : nullptr;
    }
    return nullptr;
}

} // namespace plovik
