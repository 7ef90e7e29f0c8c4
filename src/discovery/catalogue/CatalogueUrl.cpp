#include "discovery/catalogue/CatalogueUrl.h"

#include <QUrl>

#include <algorithm>
#include <array>

namespace tonequill::CatalogueUrl {

namespace {

constexpr std::array<std::string_view, 4> kUnloaded{"ogg", "oga", "opus", "webm"};

// The characters that a plain path is made of: none that QUrl would read, escape or
// replace, and none that ends a path.
constexpr std::array<bool, 256> plainCharacters()
{
    std::array<bool, 256> plain{};
    for (const unsigned char c :
         std::string_view("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/!$&'()*+,;=:@"))
        plain[c] = true;
    return plain;
}
constexpr std::array<bool, 256> kPlain = plainCharacters();

bool isHostLetter(char c)
{
    return (c >= 'a' && c <= 'z') || c == '-' || c == '.';
}

// Where the path of a plain address begins; 0 for one that QUrl has to read.
std::size_t plainPath(std::string_view text)
{
    constexpr std::string_view kHttps = "https://";
    constexpr std::string_view kHttp = "http://";
    const std::size_t host = text.starts_with(kHttps) ? kHttps.size() : text.starts_with(kHttp) ? kHttp.size() : 0;
    if (host == 0)
        return 0;
    const std::size_t path = text.find('/', host);
    if (path == std::string_view::npos || path == host || text[host] < 'a' || text[host] > 'z')
        return 0;
    const std::string_view name = text.substr(host, path - host);
    constexpr std::size_t kLongestName = 63; // of one part of a host
    if (name.size() > kLongestName || !std::all_of(name.begin(), name.end(), [](char c) { return isHostLetter(c); }) ||
        name.find("..") != name.npos || name.find("--") != name.npos || name.find("-.") != name.npos ||
        name.find(".-") != name.npos || name.back() == '-')
        return 0;
    const bool isPlain = std::all_of(text.begin() + std::ptrdiff_t(path), text.end(),
                                     [](char c) { return kPlain[static_cast<unsigned char>(c)]; });
    return isPlain ? path : 0;
}

QUrl parsed(std::string_view text)
{
    return QUrl(QString::fromUtf8(text.data(), qsizetype(text.size())));
}

// Of the last part of the path; a dot at its start begins none.
std::string_view extensionOf(std::string_view path)
{
    while (path.ends_with('/'))
        path.remove_suffix(1);
    const std::string_view name = path.substr(path.rfind('/') + 1);
    const std::size_t dot = name.rfind('.');
    return dot == name.npos || dot == 0 ? std::string_view() : name.substr(dot + 1);
}

bool isUnloaded(std::string_view extension)
{
    return std::any_of(kUnloaded.begin(), kUnloaded.end(), [&](std::string_view unloaded) {
        return std::equal(unloaded.begin(), unloaded.end(), extension.begin(), extension.end(),
                          [](char lower, char any) { return lower == (any >= 'A' && any <= 'Z' ? char(any - 'A' + 'a') : any); });
    });
}

} // namespace

bool isUrl(std::string_view text)
{
    return plainPath(text) != 0 || parsed(text).isValid();
}

bool hasUnloadedFormat(std::string_view text)
{
    if (const std::size_t path = plainPath(text))
        return isUnloaded(extensionOf(text.substr(path)));
    return isUnloaded(extensionOf(parsed(text).path(QUrl::FullyDecoded).toStdString()));
}

} // namespace tonequill::CatalogueUrl
