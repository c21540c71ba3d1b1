#include "tools/kit/shown_text.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <vector>

namespace zm::tool {
namespace {

constexpr char kHidden[] = "***";
// A key with one of these words in it has a secret for its value: api_key, X-Amz-Signature.
constexpr const char* kSecretWords[] = {"password",  "pwd",    "pass",       "passwd",     "userpwd",
                                        "token",     "secret", "key",        "apikey",     "sig",
                                        "signature", "auth",   "credential", "credentials"};
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

struct Setting {
    std::string key, value;
};

// What a connection string, the query of an address or a list of KIND:key=value,key=value sets; values with blanks are in
// quotes.
std::vector<Setting> SettingsOf(const std::string& text) {
    constexpr std::string_view kBetween = " \t,;:&?";
    std::vector<Setting> settings;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (at > 0 && kBetween.find(text[at - 1]) == std::string_view::npos) continue;
        const std::size_t end = text.find_first_of(" \t,;:&?=", at);
        std::size_t from = text.find_first_not_of(' ', end);
        if (end == at || end == std::string::npos || from == std::string::npos || text[from] != '=') continue;
        from = std::min(text.find_first_not_of(' ', from + 1), text.size());
        Setting setting{text.substr(at, end - at), {}};
        const char quote = from < text.size() ? text[from] : '\0';
        if (quote == '\'' || quote == '"') {
            for (std::size_t i = from + 1; i < text.size() && text[i] != quote; ++i) {
                if (text[i] == '\\' && i + 1 < text.size()) ++i;
                setting.value += text[i];
            }
        } else {
            setting.value = text.substr(from, text.find_first_of(" \t,;&", from) - from);
        }
        settings.push_back(setting);
    }
    return settings;
}

std::string ValueOf(const std::string& connection, std::string_view key) {
    for (const Setting& setting : SettingsOf(connection))
        if (setting.key.size() == key.size() && StartsWith(setting.key, key)) return setting.value;
    return {};
}

bool IsSecret(const std::string& key) {
    for (std::size_t at = 0, end = 0; end != std::string::npos; at = end + 1) {
        end = key.find_first_of("_-", at);
        const std::string word = key.substr(at, end - at);
        for (const std::string_view secret : kSecretWords)
            if (word.size() == secret.size() && StartsWith(word, secret)) return true;
    }
    return false;
}

// The password of KIND:user/password@server; empty in other forms.
std::string PasswordBeforeServer(const std::string& input) {
    const std::string kind = KindOfDatabase(input);
    if (kind != "ODBC" && kind != "OCI") return {};
    const std::size_t slash = input.find('/'), server = input.rfind('@');
    return slash < server && server != std::string::npos ? input.substr(slash + 1, server - slash - 1) : std::string();
}

// The values in a text that are secrets.
std::vector<std::string> SecretsIn(const std::string& text) {
    std::vector<std::string> secrets;
    if (const std::string password = PasswordBeforeServer(text); !password.empty()) secrets.push_back(password);
    for (const Setting& setting : SettingsOf(text))
        if (IsSecret(setting.key) && !setting.value.empty()) secrets.push_back(setting.value);
    return secrets;
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

// KIND:key=value,key=value of any other driver with a secret in it: the kind; empty for others.
std::string KindOfService(const std::string& input) {
    const std::size_t colon = input.find(':');
    if (colon == std::string::npos || colon < 2 || input.compare(colon, 3, "://") == 0) return {};
    const auto isWord = [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; };
    if (!std::all_of(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(colon), isWord)) return {};
    return SecretsIn(input.substr(colon + 1)).empty() ? std::string() : input.substr(0, colon);
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

// Characters that turn the order of what follows (U+202A to U+202E, U+2066 to U+2069) or end a line (U+2028, U+2029).
bool Misleads(std::string_view character) {
    if (character.size() < 3 || character[0] != '\xE2') return false;
    const auto second = static_cast<unsigned char>(character[1]), third = static_cast<unsigned char>(character[2]);
    return (second == 0x80 && third >= 0xA8 && third <= 0xAE) || (second == 0x81 && third >= 0xA6 && third <= 0xA9);
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
        } else if (Misleads(line.substr(i))) {
            shown += '?';
            i += 2;
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
        for (const std::string& value : SecretsIn(form))
            if (value.size() >= kLeastSecret) Secrets()[value] = kHidden;
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
    return !SecretsIn(input).empty() || !SecretsIn(Decoded(input)).empty();
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
