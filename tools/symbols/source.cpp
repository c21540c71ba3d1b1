#include "tools/symbols/source.h"

#include "runtime/text/gbk.h"
#include "tools/symbols/shapes.h"

namespace zm::tool::symbols {

namespace {

/// The first letter of a header's kind, 0 if it has none.
char KindOf(std::string_view header) {
    const std::size_t blank = header.find(' ');
    return blank == std::string_view::npos || blank + 1 >= header.size() ? '\0' : header[blank + 1];
}

class Builder {
 public:
    explicit Builder(std::vector<SourceFault>& faults) : m_faults(faults) {}

    void Take(std::string_view line) {
        ++m_line;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (line.find_first_not_of(" \t") == std::string_view::npos) return;
        if (line[0] == '*') {
            m_graphic = KindOf(line) == 'G';
            Put(line);
        } else if (m_graphic && line[0] != '#') {
            std::vector<std::string> records;
            if (std::string fault = ExpandShape(line, records); !fault.empty()) m_faults.push_back({m_line, fault});
            for (const std::string& record : records) Put(record);
        } else {
            Put(line);
        }
    }

    std::string Finish() {
        m_text += "*$\n";
        return std::move(m_text);
    }

 private:
    void Put(std::string_view line) {
        int lost = 0;
        m_text += gbk::FromUtf8(line, &lost);
        m_text += '\n';
        if (lost != 0) m_faults.push_back({m_line, "a character is not in the code page GBK"});
    }

    std::vector<SourceFault>& m_faults;
    std::string m_text;
    int m_line = 0;
    bool m_graphic = false;
};

}  // namespace

std::string BuildSymbolFile(const std::vector<std::string>& sources, std::vector<SourceFault>& faults) {
    Builder builder(faults);
    for (const std::string& source : sources) {
        std::string_view rest = source;
        while (!rest.empty()) {
            const std::size_t end = rest.find('\n');
            builder.Take(rest.substr(0, end));
            rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        }
    }
    return builder.Finish();
}

}  // namespace zm::tool::symbols
