// What may be shown of texts that come from elsewhere: no passwords, no control characters.
#pragma once

#include <string>
#include <string_view>

namespace zm::tool {

/// A line that is safe for a terminal: control characters (also the one-byte forms of U+0080 to U+009F), characters that
/// turn the order of a line and separators of lines become "?", a tab a blank. Bytes that are no UTF-8 stay.
std::string Printable(std::string_view line);

/// What an input is called in messages and titles: a file by its name as given; a database by its kind and database
/// name ("PG:town"), without user and password; an address without user, password and query; data that was given as it
/// is (GeoJSON, WKT, XML) as "data on the command line".
std::string ShownInput(const std::string& input);

/// Remembers what of an input must not be shown: the whole text where ShownInput differs from it, and each password in
/// it. From now on WithoutSecrets replaces them.
void RememberSecrets(const std::string& input);

/// True where an input is a database or an address with a password or a token in it.
bool HoldsPassword(const std::string& input);

/// A text without what RememberSecrets knows.
std::string WithoutSecrets(std::string text);

}  // namespace zm::tool
