// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/syntax/SyntaxLanguage.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>
#include <utility>

namespace plovik {

namespace {

struct Known {
    std::string_view name;
    std::string_view language;
};

/// Whole file names in lower case, sorted.
constexpr Known fileNames[] = {
    {".bash_aliases", "sh"},
    {".bash_profile", "sh"},
    {".bashrc", "sh"},
    {".clang-format", "yaml"},
    {".clang-tidy", "yaml"},
    {".dockerignore", "ignored"},
    {".editorconfig", "desktop"},
    {".gitattributes", "ignored"},
    {".gitconfig", "desktop"},
    {".gitignore", "ignored"},
    {".gitmodules", "desktop"},
    {".npmignore", "ignored"},
    {".profile", "sh"},
    {".vimrc", "vim"},
    {".zshrc", "zsh"},
    {"apkbuild", "sh"},
    {"build", "python"},
    {"build.bazel", "python"},
    {"cargo.lock", "toml"},
    {"changelog", "changelog"},
    {"cmakelists.txt", "cmake"},
    {"codeowners", "ignored"},
    {"containerfile", "dockerfile"},
    {"dockerfile", "dockerfile"},
    {"gemfile", "ruby"},
    {"gnumakefile", "makefile"},
    {"jenkinsfile", "groovy"},
    {"justfile", "makefile"},
    {"makefile", "makefile"},
    {"pipfile", "toml"},
    {"pkgbuild", "sh"},
    {"podfile", "ruby"},
    {"poetry.lock", "toml"},
    {"rakefile", "ruby"},
    {"vagrantfile", "ruby"},
    {"wscript", "python"},
};

/// File name endings in lower case, sorted. The library's own table lacks most of them and has other languages for
/// some.
constexpr Known endings[] = {
    {"ada", "ada"},
    {"adb", "ada"},
    {"ads", "ada"},
    {"asm", "asm"},
    {"awk", "awk"},
    {"bash", "sh"},
    {"bat", "bat"},
    {"bib", "bib"},
    {"bzl", "python"},
    {"c", "c"},
    {"c++", "cpp"},
    {"cc", "cpp"},
    {"cfg", "desktop"},
    {"cjs", "javascript"},
    {"cl", "c"},
    {"cls", "latex"},
    {"cmake", "cmake"},
    {"cmd", "bat"},
    {"coffee", "coffeescript"},
    {"conf", "desktop"},
    {"cpp", "cpp"},
    {"cs", "csharp"},
    {"css", "css"},
    {"cu", "cpp"},
    {"cuh", "cpp"},
    {"cxx", "cpp"},
    {"d", "d"},
    {"desktop", "desktop"},
    {"diff", "diff"},
    {"dockerfile", "dockerfile"},
    {"el", "lisp"},
    {"erl", "erlang"},
    {"f", "fortran"},
    {"f90", "fortran"},
    {"f95", "fortran"},
    {"feature", "feature"},
    {"frag", "glsl"},
    {"geojson", "json"},
    {"glsl", "glsl"},
    {"go", "go"},
    {"gradle", "groovy"},
    {"groovy", "groovy"},
    {"h", "cpp"},
    {"h++", "cpp"},
    {"hh", "cpp"},
    {"hpp", "cpp"},
    {"hrl", "erlang"},
    {"hs", "haskell"},
    {"htm", "html"},
    {"html", "html"},
    {"hx", "haxe"},
    {"hxx", "cpp"},
    {"inc", "cpp"},
    {"ini", "desktop"},
    {"inl", "cpp"},
    {"ino", "cpp"},
    {"ipp", "cpp"},
    {"java", "java"},
    {"js", "javascript"},
    {"json", "json"},
    {"json5", "javascript"},
    {"jsonc", "javascript"},
    {"jsx", "javascript"},
    {"ksh", "sh"},
    {"kt", "kotlin"},
    {"kts", "kotlin"},
    {"l", "flex"},
    {"latex", "latex"},
    {"less", "css"},
    {"lhs", "haskell_literate"},
    {"lisp", "lisp"},
    {"ll", "flex"},
    {"log", "log"},
    {"lua", "lua"},
    {"ly", "lilypond"},
    {"m4", "m4"},
    {"mak", "makefile"},
    {"markdown", "markdown"},
    {"md", "markdown"},
    {"mjs", "javascript"},
    {"mk", "makefile"},
    {"ml", "caml"},
    {"mli", "caml"},
    {"mount", "desktop"},
    {"mts", "typescript"},
    {"pas", "pascal"},
    {"patch", "diff"},
    {"pc", "pc"},
    {"php", "php"},
    {"pl", "perl"},
    {"plist", "xml"},
    {"pm", "perl"},
    {"po", "po"},
    {"pot", "po"},
    {"pp", "pascal"},
    {"pri", "makefile"},
    {"pro", "makefile"},
    {"properties", "properties"},
    {"proto", "proto"},
    {"ps", "postscript"},
    {"py", "python"},
    {"pyi", "python"},
    {"pyw", "python"},
    {"qml", "qml"},
    {"qrc", "xml"},
    {"r", "r"},
    {"rake", "ruby"},
    {"rb", "ruby"},
    {"rs", "rust"},
    {"sbt", "scala"},
    {"scala", "scala"},
    {"scm", "scheme"},
    {"scss", "css"},
    {"service", "desktop"},
    {"sh", "sh"},
    {"sml", "sml"},
    {"socket", "desktop"},
    {"spec", "spec"},
    {"sql", "sql"},
    {"sty", "latex"},
    {"svg", "xml"},
    {"swift", "swift"},
    {"tcl", "tcl"},
    {"tex", "latex"},
    {"texi", "texinfo"},
    {"timer", "desktop"},
    {"tk", "tcl"},
    {"toml", "toml"},
    {"ts", "typescript"},
    {"tsx", "tsx"},
    {"ui", "xml"},
    {"vala", "vala"},
    {"vapi", "vala"},
    {"vbs", "vbscript"},
    {"vert", "glsl"},
    {"vim", "vim"},
    {"vue", "html"},
    {"webmanifest", "json"},
    {"xhtml", "html"},
    {"xml", "xml"},
    {"xsd", "xml"},
    {"xsl", "xml"},
    {"xslt", "xml"},
    {"y", "bison"},
    {"yaml", "yaml"},
    {"yml", "yaml"},
    {"yy", "bison"},
    {"zsh", "zsh"},
};

/// The interpreters of "#!" lines, without path and version; sorted.
constexpr Known interpreters[] = {
    {"ash", "sh"},          {"awk", "awk"},           {"bash", "sh"},   {"bun", "typescript"}, {"dash", "sh"},
    {"deno", "typescript"}, {"gawk", "awk"},          {"ksh", "sh"},    {"lua", "lua"},        {"make", "makefile"},
    {"node", "javascript"}, {"nodejs", "javascript"}, {"perl", "perl"}, {"php", "php"},        {"pypy", "python"},
    {"python", "python"},   {"rscript", "r"},         {"ruby", "ruby"}, {"sh", "sh"},          {"tclsh", "tcl"},
    {"zsh", "zsh"},
};

static_assert(std::ranges::is_sorted(fileNames, {}, &Known::name));
static_assert(std::ranges::is_sorted(endings, {}, &Known::name));
static_assert(std::ranges::is_sorted(interpreters, {}, &Known::name));

std::string_view find(std::span<const Known> table, std::string_view name)
{
    const auto found = std::ranges::lower_bound(table, name, {}, &Known::name);
    return found != table.end() && found->name == name ? found->language : std::string_view();
}

std::string lowered(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return result;
}

std::string_view baseName(std::string_view path) { return path.substr(path.rfind('/') + 1); }

/// Returns the grammar for a file name. The result points into the tables above.
std::string_view ofName(std::string_view name)
{
    if (const std::string_view known = find(fileNames, name); !known.empty())
        return known;
    if (name.starts_with("dockerfile."))
        return "dockerfile";
    if (name.starts_with("makefile."))
        return "makefile";
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos)
        return {};
    const std::string_view ending = name.substr(dot + 1);
    // A template is shown as the file that is made from it.
    if (ending == "in" || ending == "tmpl" || ending == "template")
        return ofName(name.substr(0, dot));
    return find(endings, ending);
}

/// Cuts the first word off `text` and returns it.
std::string_view word(std::string_view& text)
{
    constexpr std::string_view blanks = " \t\r";
    const std::size_t begin = std::min(text.find_first_not_of(blanks), text.size());
    const std::size_t end = std::min(text.find_first_of(blanks, begin), text.size());
    const std::string_view result = text.substr(begin, end - begin);
    text.remove_prefix(end);
    return result;
}

std::string_view ofFirstLine(std::string_view line)
{
    if (line.starts_with("<?xml"))
        return "xml";
    if (!line.starts_with("#!"))
        return {};
    line.remove_prefix(2);
    std::string_view program = baseName(word(line));
    if (program == "env") {
        do
            program = baseName(word(line));
        while (program.starts_with('-') || program.find('=') != std::string_view::npos);
    }
    program = program.substr(0, program.find_last_not_of("0123456789.-") + 1);
    return find(interpreters, lowered(program));
}

} // namespace

std::string syntaxLanguage(std::string_view path, std::string_view firstLine)
{
    const std::string_view name = ofName(lowered(baseName(path)));
    return std::string(name.empty() ? ofFirstLine(firstLine) : name);
}

} // namespace plovik
