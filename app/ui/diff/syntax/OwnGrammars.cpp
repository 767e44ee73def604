// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/syntax/OwnGrammars.h"

#include <algorithm>

namespace plovik {

namespace {

using Kind = GrammarRule::Kind;

// The library's definitions are older than these keywords, and some of them take a character for an open quote, which
// would give the rest of a file a wrong colour.

constexpr GrammarRule c[] = {
    {Kind::pattern, "number", R"re(\<(?:0[xX][\dA-Fa-f']+|\d[\d']*(?:\.[\d']*)?(?:[eE][+-]?\d+)?)[fFlLuUzZ]*\>)re"},
    {Kind::words, "keyword", "false|inline|NULL|true"},
    {Kind::pattern, "type", R"re(\<(?:s?size|ptrdiff|u?int(?:8|16|32|64|ptr|max))_t\>)re"},
};

constexpr GrammarRule cpp[] = {
    {Kind::heredoc, "string", R"re(\<(?:u8|[uUL])?R"([^()\s]{0,16})\()re", R"re(\)@{1}")re"},
    {Kind::pattern, "number", R"re(\<(?:0[xX][\dA-Fa-f']+|\d[\d']*(?:\.[\d']*)?(?:[eE][+-]?\d+)?)[fFlLuUzZ]*\>)re"},
    {Kind::pattern, "number", R"re(\<0[bB][01]+\w*\>)re"},
    {Kind::pattern, "preproc", R"re(\[\[[\w:, ]+(?:\([^)]*\))?\]\])re"},
    {Kind::words, "keyword",
     "nullptr|co_await|co_return|co_yield|concept|requires|consteval|constinit|thread_local|alignas|alignof|and|or|"
     "not"},
    {Kind::pattern, "type", R"re(\<(?:char8_t|nullptr_t|(?:s?size|ptrdiff|u?int(?:8|16|32|64|ptr|max))_t)\>)re"},
};

// Markup within code. Its text is no code, wherever it stands: behind the end of a tag, over several lines, and behind
// an expression in braces. A ">" with a blank before it compares.
constexpr GrammarRule markupText{
    Kind::block, "normal", R"re((?<=[\w"'}])>(?=\s*$|[^<>{}=;]*(?:<[/A-Za-z]|\{))(?!\s*(?:extends|implements)\>))re",
    R"re((?=[<{;]))re"};
constexpr GrammarRule markupRest{Kind::pattern, "normal", R"re((?<=\})[^<>{};=()]+(?=</))re"};
constexpr GrammarRule markupLine{
    Kind::pattern, "normal",
    R"re((?<=\})\s+(?!(?:as|catch|else|extends|finally|from|implements|instanceof|satisfies|while)\>)[A-Za-z])re"
    R"re([^<>{};=()]*(?=[<{]|$))re"};
constexpr GrammarRule markupTag{Kind::pattern, "keyword", R"re((?<![\w\)\]])<[A-Za-z][\w.-]*(?=[\s/>]|$))re"};
constexpr GrammarRule markupEnd{Kind::pattern, "keyword", R"re(</[A-Za-z][\w.-]*>?|/>)re"};
constexpr GrammarRule markupBehindEnd{Kind::pattern, "normal",
                                      R"re((?<=\w>)(?!\s*(?:extends|implements)\>)[^<>{};=()]+(?=<))re"};

constexpr GrammarRule from{Kind::pattern, "keyword", R"re(\<from(?=\s*["']))re"};

constexpr GrammarRule javascript[] = {
    {Kind::block, "string", "`", "`", "\\"},
    markupText,
    markupRest,
    markupLine,
    markupTag,
    markupEnd,
    markupBehindEnd,
    {Kind::pattern, "preproc", R"re(@[A-Za-z]\w*)re"},
    from,
    {Kind::pattern, "keyword", R"re(\<as(?=\s+[A-Za-z_$][\w$]*\s*(?:[,}]|\<from\>)))re"},
    {Kind::words, "keyword", "async|await|import|let|of|undefined|yield"},
};

constexpr std::string_view typescriptWords =
    "abstract|as|async|await|declare|import|infer|is|keyof|let|namespace|of|override|readonly|satisfies|undefined|"
    "yield";
constexpr GrammarRule typeKeyword{Kind::pattern, "keyword", R"re(\<type(?=\s+[A-Za-z_{*]))re"};
constexpr GrammarRule typescriptTypes{
    Kind::pattern, "type", R"re(\<(?:any|bigint|boolean|never|number|object|string|symbol|unknown)\>(?!\())re"};

constexpr GrammarRule typescript[] = {
    {Kind::block, "string", "`", "`", "\\"},
    {Kind::pattern, "preproc", R"re(@[A-Za-z]\w*)re"},
    from,
    {Kind::words, "keyword", typescriptWords},
    typeKeyword,
    typescriptTypes,
};

constexpr GrammarRule tsx[] = {
    {Kind::block, "string", "`", "`", "\\"},
    markupText,
    markupRest,
    markupLine,
    markupTag,
    markupEnd,
    markupBehindEnd,
    {Kind::pattern, "preproc", R"re(@[A-Za-z]\w*)re"},
    from,
    {Kind::words, "keyword", typescriptWords},
    typeKeyword,
    typescriptTypes,
};

constexpr GrammarRule qml[] = {
    {Kind::pattern, "preproc", R"re(^\s*(?:import|pragma)\>)re"},
    {Kind::words, "keyword", "alias|async|await|let|of|property|readonly|required|signal|undefined"},
    {Kind::words, "type", "bool|color|double|int|list|real|string|url|variant"},
    {Kind::pattern, "type", R"re(\<[A-Z]\w*(?=\s*\{))re"},
    {Kind::pattern, "name", R"re(\<[a-z][\w.]*(?=\s*:))re"},
};

constexpr GrammarRule java[] = {
    {Kind::block, "string", "\"\"\"", "\"\"\"", "\\"},
    {Kind::pattern, "preproc", R"re(@[A-Za-z][\w.]*)re"},
    {Kind::words, "keyword", "enum|non-sealed|permits|record|sealed|var"},
};

constexpr GrammarRule kotlin[] = {
    {Kind::block, "string", "\"\"\"", "\"\"\""},
    {Kind::pattern, "preproc", R"re(@[A-Za-z][\w.:]*)re"},
    {Kind::words, "keyword",
     "as|by|companion|constructor|data|enum|fun|in|init|inline|internal|is|lateinit|object|open|operator|out|override|"
     "reified|sealed|suspend|typealias|val|var|when|where"},
    {Kind::words, "type", "Any|Boolean|Byte|Char|Double|Float|Int|List|Long|Map|Nothing|Set|Short|String|Unit"},
};

constexpr GrammarRule swift[] = {
    {Kind::block, "comment", R"re(/\*)re", R"re(\*/)re"},
    {Kind::pattern, "comment", "//.*"},
    {Kind::block, "string", "\"\"\"", "\"\"\"", "\\"},
    {Kind::pattern, "string", R"re("(?:\\.|[^"\\])*")re"},
    {Kind::pattern, "preproc", R"re([@#][A-Za-z]\w*)re"},
    {Kind::pattern, "number", R"re(\<(?:0[xX][\dA-Fa-f_]+|0[bo][0-7_]+|\d[\d_]*(?:\.\d[\d_]*)?(?:[eE][+-]?\d+)?)\>)re"},
    {Kind::words, "keyword",
     "actor|as|associatedtype|async|await|break|case|catch|class|continue|convenience|default|defer|deinit|do|else|"
     "enum|"
     "extension|fallthrough|false|fileprivate|final|for|func|guard|if|import|in|indirect|init|inout|internal|is|lazy|"
     "let|"
     "mutating|nil|open|operator|override|private|protocol|public|repeat|required|rethrows|return|self|some|static|"
     "struct|"
     "subscript|super|switch|throw|throws|true|try|typealias|unowned|var|weak|where|while"},
    {Kind::pattern, "type", R"re(\<[A-Z]\w*\>(?!\())re"},
    {Kind::pattern, "function", R"re(\<[a-z_]\w*(?=\())re"},
};

constexpr GrammarRule rust[] = {
    {Kind::block, "comment", R"re(/\*)re", R"re(\*/)re"},
    {Kind::pattern, "preproc", R"re(#!?\[[^\]]*\])re"},
    {Kind::pattern, "function", R"re(\<[a-z_]\w*!(?=[\(\[\{ ]))re"},
    {Kind::pattern, "name", R"re('[a-z_]\w*\>(?!'))re"},
    {Kind::words, "keyword", "async|await|dyn|macro_rules"},
    {Kind::pattern, "number", R"re(\<\d[\d_]*(?:\.\d[\d_]*)?(?:[iuf](?:8|16|32|64|128|size))?\>)re"},
    {Kind::words, "type", "str|String|Vec|Option|Result|Box|Rc|Arc"},
};

constexpr GrammarRule python[] = {
    {Kind::pattern, "preproc", R"re(^\s*@[A-Za-z_][\w.]*)re"},
    {Kind::words, "keyword", "as|False|None|nonlocal|True|with|yield"},
    {Kind::words, "name", "cls|self"},
};

constexpr GrammarRule shell[] = {
    {Kind::heredoc, "string", R"re(<<[-~]?\s?\\?["']?([A-Za-z_]\w*)["']?)re", R"re(^\s*@{1}\s*$)re"},
    {Kind::pattern, "comment", R"re((?:^|\s)#.*)re"},
    {Kind::pattern, "variable", R"re(\$\{[^}\s]*\}|\$\w+|\$[#?@*!$-])re"},
    {Kind::pattern, "normal", R"re(\$\()re"},
};

constexpr GrammarRule makefile[] = {
    {Kind::pattern, "variable", R"re(\$[({][\w.@%<^+*?-]+[)}]|\$[@<^+*?%])re"},
    {Kind::pattern, "preproc", R"re(^\s*-?(?:include|ifn?eq|ifn?def|else|endif|define|endef|export|vpath)\>)re"},
    {Kind::pattern, "type", R"re(^[A-Za-z_][\w.-]*(?=\s*[:?+]?=))re"},
};

constexpr GrammarRule ruby[] = {
    {Kind::heredoc, "string", R"re(<<[-~]?["'`]?([A-Z_]\w*)["'`]?)re", R"re(^\s*@{1}\s*$)re"},
    {Kind::pattern, "symbol", R"re(<[<=\s]|<$|/(?=[\s=]))re"},
    {Kind::pattern, "name", R"re((?<!:):[A-Za-z_]\w*[?!]?|\<[a-z_]\w*:(?=\s))re"},
};

constexpr GrammarRule perl[] = {
    {Kind::heredoc, "string", R"re(<<~?["']?([A-Z_]\w*)["']?)re", R"re(^\s*@{1}\s*$)re"},
    {Kind::pattern, "symbol", R"re(<[<=\s]|<$|/(?=[\s=]))re"},
    {Kind::pattern, "variable", R"re(\$#\w*|\$[!@&0-9_])re"},
};

constexpr GrammarRule json[] = {
    {Kind::pattern, "name", R"re("(?:\\.|[^"\\])*"(?=\s*:))re"},
    {Kind::pattern, "string", R"re("(?:\\.|[^"\\])*")re"},
    {Kind::pattern, "number", R"re(-?\d+(?:\.\d+)?(?:[eE][+-]?\d+)?)re"},
    {Kind::words, "keyword", "true|false|null"},
};

constexpr GrammarRule css[] = {
    {Kind::block, "comment", R"re(/\*)re", R"re(\*/)re"},
    {Kind::pattern, "comment", R"re(^\s*//.*)re"},
    {Kind::pattern, "string", R"re("(?:\\.|[^"\\])*"|'(?:\\.|[^'\\])*')re"},
    {Kind::pattern, "string", R"re(\<url\([^)"']*\))re"},
    {Kind::pattern, "preproc", R"re(@[\w-]+)re"},
    {Kind::pattern, "keyword", R"re(!\s*important\>)re"},
    {Kind::pattern, "number", R"re(#[\dA-Fa-f]{3,8}\>(?=\s*(?:[;,)!}]|$|\s\S+;)))re"},
    {Kind::pattern, "name", R"re((?:--|\$)[\w-]+|\<[a-z-]+(?=\s*:[^:{]*(?:[;}]|$)))re"},
    {Kind::pattern, "type", R"re([.#][A-Za-z_][\w-]*|::?[a-z][\w-]*(?=[^;]*\{))re"},
    {Kind::pattern, "number", R"re((?<![\w-])[+-]?(?:\d*\.)?\d+(?:%|[a-z]+\>)?)re"},
    {Kind::pattern, "function", R"re(\<[a-z][\w-]*(?=\())re"},
};

constexpr GrammarRule yaml[] = {
    {Kind::pattern, "comment", R"re((?:^|\s)#.*)re"},
    {Kind::pattern, "preproc", R"re(^(?:---|\.\.\.|%\w+).*)re"},
    {Kind::pattern, "name", R"re((?:"[^"]*"|'[^']*'|[A-Za-z_.$/<][^#:'"\[\]{},]*)(?=:(?:\s|$)))re"},
    {Kind::pattern, "string", R"re("(?:\\.|[^"\\])*"|(?<!\w)'(?:''|[^'])*')re"},
    {Kind::pattern, "type", R"re((?<!\S)(?:[&*]\w[\w.-]*|!!?[\w/.-]+))re"},
    {Kind::pattern, "keyword", R"re((?<!\S)(?:true|false|null|yes|no|on|off|~)(?=\s*(?:$|[,\]}#])))re"},
    {Kind::pattern, "number",
     R"re((?<!\S)[+-]?(?:0x[\dA-Fa-f]+|\d+(?:\.\d+)?(?:[eE][+-]?\d+)?)(?=\s*(?:$|[,\]}#])))re"},
};

constexpr GrammarRule toml[] = {
    {Kind::block, "string", "\"\"\"", "\"\"\"", "\\"},
    {Kind::block, "string", "'''", "'''"},
    {Kind::pattern, "comment", "#.*"},
    {Kind::pattern, "keyword", R"re(^\s*\[\[?[^\]=]*\]\]?(?=\s*(?:#|$)))re"},
    {Kind::pattern, "name", R"re([\w.-]+(?=\s*=))re"},
    {Kind::pattern, "string", R"re("(?:\\.|[^"\\])*"|'[^']*')re"},
    {Kind::words, "keyword", "true|false|inf|nan"},
    {Kind::pattern, "number", R"re((?<![\w-])[+-]?\d[\w:.+-]*)re"},
};

constexpr GrammarRule cmake[] = {
    {Kind::heredoc, "comment", R"re(#\[(=*)\[)re", R"re(\]@{1}\])re"},
    {Kind::pattern, "comment", "#.*"},
    {Kind::block, "string", "\"", "\"", "\\"},
    {Kind::pattern, "variable", R"re(\$(?:ENV|CACHE)?\{[^}]*\})re"},
    {Kind::pattern, "keyword",
     R"re(\<(?i:if|elseif|else|endif|foreach|endforeach|while|endwhile|function|endfunction|macro|endmacro|return|break|)re"
     R"re(continue|include|block|endblock)(?=\s*\())re"},
    {Kind::pattern, "function", R"re(^\s*[A-Za-z_]\w*(?=\s*\())re"},
    {Kind::words, "keyword",
     "AND|OR|NOT|STREQUAL|EQUAL|LESS|GREATER|MATCHES|VERSION_LESS|EXISTS|DEFINED|IN|LISTS|ITEMS|ON|OFF|TRUE|FALSE"},
    {Kind::words, "type",
     "PUBLIC|PRIVATE|INTERFACE|REQUIRED|COMPONENTS|STATIC|SHARED|MODULE|IMPORTED|ALIAS|CACHE|FORCE"},
    {Kind::pattern, "number", R"re(\<\d+(?:\.\d+)*\>)re"},
};

constexpr GrammarRule dockerfile[] = {
    {Kind::pattern, "comment", R"re(^\s*#.*)re"},
    {Kind::pattern, "keyword",
     R"re(^\s*(?i:FROM|RUN|CMD|LABEL|EXPOSE|ENV|ADD|COPY|ENTRYPOINT|VOLUME|USER|WORKDIR|ARG|ONBUILD|STOPSIGNAL|)re"
     R"re(HEALTHCHECK|SHELL)\>)re"},
    {Kind::pattern, "keyword", R"re(\<(?:AS|as)(?=\s+[\w-]+\s*$))re"},
    {Kind::pattern, "string", R"re("(?:\\.|[^"\\])*"|(?<!\w)'[^']*')re"},
    {Kind::pattern, "variable", R"re(\$\{[^}\s]*\}|\$\w+)re"},
};

constexpr GrammarRule markdown[] = {
    {Kind::heredoc, "string", R"re(^\s*(```+|~~~+).*)re", R"re(^\s*@{1}\s*$)re"},
    {Kind::block, "comment", "<!--", "-->"},
    {Kind::pattern, "keyword", R"re(^#{1,6}\s.*)re"},
    {Kind::pattern, "comment", R"re(^\s{0,3}>.*)re"},
    {Kind::pattern, "keyword", R"re(^\s*(?:[-*+]|\d+[.\)])(?=\s))re"},
    {Kind::pattern, "string", R"re(``[^`]+``|`[^`]+`)re"},
    {Kind::pattern, "type", R"re(\*\*[^*\s][^*]*\*\*|\<__[^_\s][^_]*__\>)re"},
    {Kind::pattern, "name", R"re((?<=\])(?:\([^()\s]*(?: "[^"]*")?\)|\[[^\]]*\])|<?https?://[^\s<>\)]*>?)re"},
};

constexpr GrammarRule settings[] = {
    {Kind::pattern, "comment", R"re(^\s*[#;].*)re"},
    {Kind::pattern, "keyword", R"re(^\s*\[.*\])re"},
    {Kind::pattern, "name", R"re(^\s*[^=\[\s][^=\[]*(?:\[[\w@.-]+\])?(?=\s*=))re"},
};

constexpr GrammarRule ignored[] = {
    {Kind::pattern, "comment", R"re(^\s*#.*)re"},
    {Kind::pattern, "keyword", "^!"},
};

constexpr GrammarRule sql[] = {
    {Kind::pattern, "comment", "--.*"},
    {Kind::block, "comment", R"re(/\*)re", R"re(\*/)re"},
    {Kind::block, "string", "'", "'"},
    {Kind::pattern, "name", R"re("[^"]*"|`[^`]*`)re"},
    {Kind::pattern, "keyword",
     R"re(\<(?i:add|all|alter|analyze|and|any|as|asc|auto_increment|before|begin|between|by|cascade|case|cast|check|)re"
     R"re(collate|column|commit|conflict|constraint|create|cross|current_date|current_time|current_timestamp|database|)re"
     R"re(declare|default|delete|desc|describe|distinct|do|drop|each|else|end|escape|except|execute|exists|explain|)re"
     R"re(false|fetch|filter|first|for|foreign|from|full|function|grant|group|having|if|ilike|in|index|inner|insert|)re"
     R"re(intersect|into|is|join|key|language|lateral|left|like|limit|loop|materialized|merge|natural|no|not|nothing|)re"
     R"re(null|nulls|of|offset|on|or|order|outer|over|partition|pragma|primary|procedure|recursive|references|)re"
     R"re(rename|replace|restrict|return|returning|returns|revoke|right|rollback|row|rows|savepoint|schema|select|)re"
     R"re(sequence|set|show|some|table|temp|temporary|then|to|transaction|trigger|true|truncate|union|unique|update|)re"
     R"re(use|using|values|view|when|where|while|window|with|without)\>)re"},
    {Kind::pattern, "type",
     R"re(\<(?i:bigint|bigserial|binary|bit|blob|bool|boolean|bytea|char|character|clob|date|datetime|decimal|double|)re"
     R"re(enum|float|inet|int|integer|interval|json|jsonb|longtext|mediumtext|numeric|real|serial|smallint|text|time|)re"
     R"re(timestamp|timestamptz|tinyint|unsigned|uuid|varbinary|varchar|varying)\>)re"},
    {Kind::pattern, "function", R"re(\<[A-Za-z_]\w*(?=\())re"},
    {Kind::pattern, "number", R"re(\<\d+(?:\.\d+)?(?:[eE][+-]?\d+)?\>)re"},
};

constexpr GrammarRule proto[] = {
    {Kind::pattern, "comment", "//.*"},
    {Kind::words, "keyword", "map|oneof|optional|repeated|required|reserved|stream|syntax"},
};

constexpr OwnGrammar grammars[] = {
    {"c", "c", c},
    {"cmake", "", cmake, true},
    {"cpp", "cpp", cpp},
    {"css", "", css},
    {"desktop", "", settings},
    {"dockerfile", "", dockerfile},
    {"html", "html", {}, true},
    {"ignored", "", ignored},
    {"java", "java", java},
    {"javascript", "javascript", javascript},
    {"json", "", json},
    {"kotlin", "java", kotlin},
    {"makefile", "makefile", makefile},
    {"markdown", "", markdown},
    {"perl", "perl", perl, true},
    {"php", "php", {}, true},
    {"proto", "proto", proto},
    {"python", "python", python},
    {"qml", "javascript", qml},
    {"ruby", "ruby", ruby, true},
    {"rust", "rust", rust, true},
    {"sh", "sh", shell, true},
    {"sql", "", sql, true},
    {"swift", "", swift},
    {"toml", "", toml},
    {"tsx", "javascript", tsx},
    {"typescript", "javascript", typescript},
    {"xml", "xml", {}, true},
    {"yaml", "", yaml},
    {"zsh", "sh", shell, true},
};
static_assert(std::ranges::is_sorted(grammars, {}, &OwnGrammar::name));

} // namespace

const OwnGrammar* ownGrammar(std::string_view name)
{
    const auto* const found = std::ranges::lower_bound(grammars, name, {}, &OwnGrammar::name);
    return found != std::end(grammars) && found->name == name ? found : nullptr;
}

} // namespace plovik
