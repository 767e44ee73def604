// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/WebAddress.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace gitkit {

namespace {

/// An address of a remote taken apart.
struct RemoteParts {
    std::string scheme; ///< https, http or ssh
    std::string host;   ///< in lower case, with the port of a web server
    std::string path;   ///< without slashes around it, percent-encoded
};

bool isPlainForWeb(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code < 0x80 && (std::isalnum(code) != 0 || std::string_view("-._~/").find(byte) != std::string_view::npos);
}

std::string percentEncoded(std::string_view text, std::string_view alsoPlain = {})
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char byte : text) {
        const auto code = static_cast<unsigned char>(byte);
        if (isPlainForWeb(byte) || alsoPlain.find(byte) != std::string_view::npos)
            encoded += byte;
        else
            encoded += {'%', digits[code >> 4U], digits[code & 15U]};
    }
    return encoded;
}

std::string lowerCase(std::string_view text)
{
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](unsigned char byte) { return static_cast<char>(std::tolower(byte)); });
    return lower;
}

bool isHostName(std::string_view host)
{
    return !host.empty() && host.front() != '.' && host.front() != '-' && std::ranges::all_of(host, [](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        return code < 0x80 && (std::isalnum(code) != 0 || byte == '.' || byte == '-');
    });
}

bool isNumber(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string_view withoutSlashes(std::string_view path)
{
    while (path.starts_with('/'))
        path.remove_prefix(1);
    while (path.ends_with('/'))
        path.remove_suffix(1);
    return path;
}

/// Puts parts together that lead somewhere; nullopt for others.
std::optional<RemoteParts> partsOf(std::string scheme, std::string_view host, std::string_view port,
                                   std::string_view path)
{
    if (!isHostName(host) || (!port.empty() && !isNumber(port)))
        return std::nullopt;
    path = withoutSlashes(path);
    if (path.ends_with(".git"))
        path.remove_suffix(4);
    if (path.empty() || ('/' + std::string(path) + '/').find("/../") != std::string::npos)
        return std::nullopt;
    std::string wholeHost = lowerCase(host);
    if (scheme != "ssh" && !port.empty())
        wholeHost.append(1, ':').append(port);
    // What stands in an address of the web is encoded already.
    return RemoteParts{scheme, std::move(wholeHost), percentEncoded(path, scheme == "ssh" ? "" : "%")};
}

std::optional<RemoteParts> withScheme(std::string_view remote, std::size_t end)
{
    std::string scheme = lowerCase(remote.substr(0, end));
    if (scheme == "git+ssh" || scheme == "ssh+git")
        scheme = "ssh";
    if (scheme != "https" && scheme != "http" && scheme != "ssh")
        return std::nullopt;
    std::string_view rest = remote.substr(end + 3);
    const std::size_t slash = rest.find('/');
    if (slash == std::string_view::npos)
        return std::nullopt;
    std::string_view host = rest.substr(0, slash);
    if (const std::size_t user = host.rfind('@'); user != std::string_view::npos)
        host.remove_prefix(user + 1);
    const std::size_t colon = host.find(':');
    const std::string_view port = colon == std::string_view::npos ? std::string_view() : host.substr(colon + 1);
    return partsOf(std::move(scheme), host.substr(0, colon), port, rest.substr(slash));
}

std::optional<RemoteParts> remoteParts(std::string_view remote)
{
    if (const std::size_t end = remote.find("://"); end != std::string_view::npos)
        return withScheme(remote, end);
    // As scp names it: what comes before the colon is no path.
    const std::size_t colon = remote.find(':');
    if (colon == std::string_view::npos || remote.substr(0, colon).find('/') != std::string_view::npos ||
        remote.substr(colon).starts_with("::"))
        return std::nullopt;
    std::string_view host = remote.substr(0, colon);
    if (const std::size_t user = host.rfind('@'); user != std::string_view::npos)
        host.remove_prefix(user + 1);
    return partsOf("ssh", host, {}, remote.substr(colon + 1));
}

std::optional<Forge> forgeOf(std::string_view host, const WebHosts& hosts)
{
    const std::string_view name = host.substr(0, host.find(':'));
    for (const auto& [known, forge] : hosts) {
        if (known == host || known == name)
            return forge;
    }
    constexpr auto parts = std::to_array<std::pair<std::string_view, Forge>>({{"dev.azure.com", Forge::azure},
                                                                              {"visualstudio.com", Forge::azure},
                                                                              {"gitlab", Forge::gitLab},
                                                                              {"gitea", Forge::gitea},
                                                                              {"forgejo", Forge::gitea},
                                                                              {"codeberg.org", Forge::gitea},
                                                                              {"bitbucket", Forge::bitbucket},
                                                                              {"github", Forge::gitHub}});
    for (const auto& [part, forge] : parts) {
        if (name.find(part) != std::string_view::npos)
            return forge;
    }
    return std::nullopt;
}

/// Its addresses for ssh have another form, as in ssh.dev.azure.com:v3/ORGANISATION/PROJECT/REPOSITORY.
std::string azurePage(const RemoteParts& parts)
{
    std::string_view path = parts.path;
    if (parts.scheme == "ssh" && path.starts_with("v3/")) {
        path.remove_prefix(3);
        const std::size_t name = path.rfind('/');
        if (name != std::string_view::npos)
            return "https://dev.azure.com/" + std::string(path.substr(0, name)) + "/_git" +
                   std::string(path.substr(name));
    }
    return "https://" + parts.host + '/' + std::string(path);
}

std::string lineAnchor(Forge forge, const LineRange& lines)
{
    const std::string first = std::to_string(lines.first);
    const std::string last = std::to_string(lines.last);
    const bool isOne = lines.first == lines.last;
    switch (forge) {
    case Forge::gitLab:
        return isOne ? "#L" + first : "#L" + first + '-' + last;
    case Forge::bitbucket:
        return isOne ? "#lines-" + first : "#lines-" + first + ':' + last;
    case Forge::azure:
        return "&line=" + first + "&lineEnd=" + last + "&lineStartColumn=1&lineEndColumn=1000";
    case Forge::gitHub:
    case Forge::gitea:
        break;
    }
    return isOne ? "#L" + first : "#L" + first + "-L" + last;
}

/// Returns the address in a line up to the first character that none has, without what ends its sentence.
std::string_view addressOf(std::string_view line)
{
    std::size_t begin = line.find("https://");
    if (begin == std::string_view::npos)
        begin = line.find("http://");
    if (begin == std::string_view::npos)
        return {};
    line.remove_prefix(begin);
    const auto end = std::ranges::find_if(line, [](char byte) {
        return byte <= ' ' || static_cast<unsigned char>(byte) > 0x7e ||
               std::string_view("<>\"'`{}|\\^").find(byte) != std::string_view::npos;
    });
    line = line.substr(0, static_cast<std::size_t>(end - line.begin()));
    while (!line.empty() && std::string_view(".,;:!?)]").find(line.back()) != std::string_view::npos)
        line.remove_suffix(1);
    return line.ends_with("//") ? std::string_view() : line;
}

} // namespace

std::optional<WebPlace> webPlaceOf(std::string_view remote, const WebHosts& hosts)
{
    const std::optional<RemoteParts> parts = remoteParts(remote);
    const std::optional<Forge> forge = parts ? forgeOf(parts->host, hosts) : std::nullopt;
    if (!forge)
        return std::nullopt;
    if (*forge == Forge::azure)
        return WebPlace{*forge, azurePage(*parts)};
    return WebPlace{*forge, (parts->scheme == "http" ? "http://" : "https://") + parts->host + '/' + parts->path};
}

std::string commitAddress(const WebPlace& place, const std::string& hash)
{
    switch (place.forge) {
    case Forge::gitLab:
        return place.page + "/-/commit/" + hash;
    case Forge::bitbucket:
        return place.page + "/commits/" + hash;
    default:
        return place.page + "/commit/" + hash;
    }
}

std::string fileAddress(const WebPlace& place, const std::string& hash, const std::string& path,
                        const std::optional<LineRange>& lines)
{
    const std::string file = percentEncoded(path);
    const std::string anchor = lines ? lineAnchor(place.forge, *lines) : std::string();
    switch (place.forge) {
    case Forge::gitLab:
        return place.page + "/-/blob/" + hash + '/' + file + anchor;
    case Forge::gitea:
        return place.page + "/src/commit/" + hash + '/' + file + anchor;
    case Forge::bitbucket:
        return place.page + "/src/" + hash + '/' + file + anchor;
    case Forge::azure:
        return place.page + "?path=/" + file + "&version=GC" + hash + anchor;
    case Forge::gitHub:
        break;
    }
    return place.page + "/blob/" + hash + '/' + file + anchor;
}

std::string newRequestAddress(const WebPlace& place, const std::string& branch, const std::string& base)
{
    const std::string from = percentEncoded(branch);
    const std::string to = percentEncoded(base);
    const auto withBase = [&to](const char* key) { return to.empty() ? std::string() : key + to; };
    switch (place.forge) {
    case Forge::gitLab:
        return place.page + "/-/merge_requests/new?merge_request%5Bsource_branch%5D=" + from +
               withBase("&merge_request%5Btarget_branch%5D=");
    case Forge::bitbucket:
        return place.page + "/pull-requests/new?source=" + from + withBase("&dest=") + "&t=1";
    case Forge::azure:
        return place.page + "/pullrequestcreate?sourceRef=" + from + withBase("&targetRef=");
    case Forge::gitea:
        return place.page + "/compare/" + (to.empty() ? from : to + "..." + from);
    case Forge::gitHub:
        break;
    }
    return place.page + "/compare/" + (to.empty() ? from : to + "..." + from) + "?expand=1";
}

std::string issueAddress(const WebPlace& place, const std::string& number)
{
    if (place.forge == Forge::gitLab)
        return place.page + "/-/issues/" + number;
    if (place.forge == Forge::azure)
        return place.page.substr(0, place.page.find("/_git/")) + "/_workitems/edit/" + number;
    return place.page + "/issues/" + number;
}

std::string requestAddress(const WebPlace& place, const std::string& number)
{
    switch (place.forge) {
    case Forge::gitLab:
        return place.page + "/-/merge_requests/" + number;
    case Forge::bitbucket:
        return place.page + "/pull-requests/" + number;
    case Forge::azure:
        return place.page + "/pullrequest/" + number;
    case Forge::gitea:
        return place.page + "/pulls/" + number;
    case Forge::gitHub:
        break;
    }
    return place.page + "/pull/" + number;
}

std::string addressIn(const std::vector<std::string>& lines)
{
    std::string first;
    for (const std::string& line : lines) {
        const std::string_view address = addressOf(line);
        for (const std::string_view part : {"/pull", "/merge_requests", "/compare"}) {
            if (address.find(part) != std::string_view::npos)
                return std::string(address);
        }
        if (first.empty())
            first = address;
    }
    return first;
}

} // namespace gitkit
