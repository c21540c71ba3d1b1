#include "tools/kit/shown_text.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>

namespace zm::tool {
namespace {

constexpr char kHidden[] = "***";
constexpr const char* kSecretKeys[] = {"password",      "pwd",          "pass",      "passwd",          "userpwd",
                                       "token",         "access_token", "sas_token", "secret",          "secret_key",
                                       "client_secret", "key",          "api_key",   "apikey",          "api-key",
                                       "access_key",    "sig",          "signature", "X-Amz-Signature", "auth",
                                       "credentials"};
constexpr std::size_t kLeastSecret = 3;  // bytes; a shorter word would be taken out of other texts too

std::map<std::string, std::string, std::greater<>>& Secrets() {
    static std::map<std::string, std::string, std::greater<>> secrets;  // text and what is shown for it
    return secrets;
}

bool StartsWith(const std::string& text, std::string_view start) {
    return text.size() >= start.size() && std::equal(start.begin(), start.end(), text.begin(), [](char a, char b) {
               return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
           });
}

// "PG", "MYSQL" ... before a colon; empty where there is none. One letter is a drive.
std::string KindOfDatabase(const std::string& input) {
    for (const char* kind :
         {"PG", "PGEO", "MYSQL", "MSSQL", "OCI", "ODBC", "MongoDB", "MongoDBv3", "HANA", "IDB", "SDE", "ES"})
        if (StartsWith(input, std::string(kind) + ":")) return kind;
    return {};
}

// The value of a key of a connection string: key=value, value in quotes where it has blanks.
std::string ValueOf(const std::string& connection, std::string_view key) {
    for (std::size_t at = 0; at < connection.size(); ++at) {
        const bool first = at == 0 || std::string_view(" \t,;:&?").find(connection[at - 1]) != std::string_view::npos;
        if (!first || !StartsWith(connection.substr(at), key)) continue;
        std::size_t from = at + key.size();
        while (from < connection.size() && connection[from] == ' ') ++from;
        if (from >= connection.size() || connection[from] != '=') continue;
        ++from;
        while (from < connection.size() && connection[from] == ' ') ++from;
        const char quote = from < connection.size() ? connection[from] : '\0';
        if (quote == '\'' || quote == '"') {
            std::string value;
            for (std::size_t i = from + 1; i < connection.size() && connection[i] != quote; ++i) {
                if (connection[i] == '\\' && i + 1 < connection.size()) ++i;
                value += connection[i];
            }
            return value;
        }
        return connection.substr(from, connection.find_first_of(" \t,;&", from) - from);
    }
    return {};
}

// The place of "//" of an address with user or password in it; npos where there are none.
bool HasUser(const std::string& input, std::size_t& from, std::size_t& at) {
    from = input.find("://");
    if (from == std::string::npos) return false;
    from += 3;
    at = input.find('@', from);
    const std::size_t path = input.find_first_of("/?#", from);
    return at != std::string::npos && (path == std::string::npos || at < path);
}

bool HasSecretKey(const std::string& input) {
    return std::any_of(std::begin(kSecretKeys), std::end(kSecretKeys),
                       [&](const char* key) { return !ValueOf(input, key).empty(); });
}

// KIND:key=value,key=value of any other driver with a secret in it: the kind; empty for others.
std::string KindOfService(const std::string& input) {
    const std::size_t colon = input.find(':');
    if (colon == std::string::npos || colon < 2 || input.compare(colon, 3, "://") == 0) return {};
    const auto isWord = [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; };
    if (!std::all_of(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(colon), isWord)) return {};
    return HasSecretKey(input.substr(colon + 1)) ? input.substr(0, colon) : std::string();
}

// %3A and the like as the characters that they are.
std::string Decoded(const std::string& text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto isDigit = [&](std::size_t at) {
            return at < text.size() && std::isxdigit(static_cast<unsigned char>(text[at])) != 0;
        };
        if (text[i] == '%' && isDigit(i + 1) && isDigit(i + 2)) {
            decoded += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

// An address, also one that GDAL is to read by /vsicurl/ and the like.
bool IsAddress(const std::string& input) {
    return input.find("://") != std::string::npos ||
           (StartsWith(input, "/vsi") && input.find('?') != std::string::npos);
}

bool IsData(const std::string& input) {
    const std::size_t first = input.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return false;
    if (input[first] == '{' || input[first] == '<' || input[first] == '[') return true;
    const std::string start = input.substr(first);
    for (const char* shape : {"POINT", "LINESTRING", "POLYGON", "MULTI", "GEOMETRYCOLLECTION", "SRID="})
        if (StartsWith(start, shape) && start.find_first_of("(=") != std::string::npos) return true;
    return false;
}

}  // namespace

std::string Printable(std::string_view line) {
    std::string shown;
    shown.reserve(line.size());
    for (std::size_t i = 0; i < line.size(); ++i) {
        const auto byte = static_cast<unsigned char>(line[i]);
        const auto next = i + 1 < line.size() ? static_cast<unsigned char>(line[i + 1]) : 0U;
        if (byte == '\t') {
            shown += ' ';
        } else if (byte < 0x20 || byte == 0x7F) {
            shown += '?';
        } else if (byte == 0xC2 && next >= 0x80 && next <= 0x9F) {
            shown += '?';
            ++i;
        } else {
            shown += line[i];
        }
    }
    return shown;
}

std::string ShownInput(const std::string& input) {
    if (const std::string kind = KindOfDatabase(input); !kind.empty()) {
        const std::string connection = input.substr(kind.size() + 1);
        for (const char* key : {"dbname", "database", "service", "dsn"})
            if (const std::string name = ValueOf(connection, key); !name.empty())
                return std::string(kind).append(":").append(name);
        std::size_t from = 0, at = 0;
        if (connection.find("://") != std::string::npos) {
            HasUser(connection, from, at);
            const std::size_t slash = connection.find('/', from);
            if (slash != std::string::npos)
                return kind + ":" + connection.substr(slash + 1, connection.find_first_of("?#", slash) - slash - 1);
        }
        return kind + ":a database";
    }
    if (IsData(input)) return "data on the command line";
    if (IsAddress(input)) {
        std::string shown = input.substr(0, input.find_first_of("?#"));
        std::size_t from = 0, at = 0;
        if (HasUser(shown, from, at)) shown.erase(from, at + 1 - from);
        return shown;
    }
    if (const std::string kind = KindOfService(input); !kind.empty()) return kind + ":a database";
    return input;
}

void RememberSecrets(const std::string& input) {
    const std::string shown = ShownInput(input);
    if (shown == input) return;
    Secrets()[input] = shown;
    // GDAL repeats parts of an address, with its characters written out.
    for (const std::string& form : {input, Decoded(input)}) {
        for (const char* key : kSecretKeys)
            if (const std::string value = ValueOf(form, key); value.size() >= kLeastSecret) Secrets()[value] = kHidden;
        const std::size_t query = form.find('?');
        if (IsAddress(form) && query != std::string::npos && form.size() - query > kLeastSecret)
            Secrets()[form.substr(query + 1)] = kHidden;
        std::size_t from = 0, at = 0;
        if (!HasUser(form, from, at)) continue;
        const std::string user = form.substr(from, at - from);
        const std::size_t colon = user.find(':');
        if (colon != std::string::npos && user.size() - colon > kLeastSecret)
            Secrets()[user.substr(colon + 1)] = kHidden;
    }
}

bool HoldsPassword(const std::string& input) {
    if (ShownInput(input) == input || IsData(input)) return false;
    std::size_t from = 0, at = 0;
    if (HasUser(input, from, at) && input.substr(from, at - from).find(':') != std::string::npos) return true;
    return HasSecretKey(input) || HasSecretKey(Decoded(input));
}

std::string WithoutSecrets(std::string text) {
    // The longest first: a connection string has its password in it.
    for (const bool whole : {true, false})
        for (const auto& [secret, shown] : Secrets()) {
            if ((shown != kHidden) != whole) continue;
            for (std::size_t at = text.find(secret); at != std::string::npos; at = text.find(secret, at + shown.size()))
                text.replace(at, secret.size(), shown);
        }
    return text;
}

}  // namespace zm::tool
