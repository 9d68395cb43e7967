#include "places/CsvTable.h"

#include "places/TextLines.h"

#include <algorithm>
#include <strings.h>

namespace {

struct Row {
    std::vector<std::string> fields{};
    std::size_t line = 0; // where it begins
};

/// Reads a table row by row.
class CsvReader {
public:
    explicit CsvReader(const std::string& text) : m_text(text) {}

    /// @return whether there was another row
    bool Read(Row& row) {
        row = {.line = m_line};
        if (m_next >= m_text.size()) {
            return false;
        }
        do {
            row.fields.push_back(ReadField());
        } while (m_next < m_text.size() && m_text[m_next++] == ',');
        ++m_line;
        return true;
    }

private:
    // Ends before the comma or the line feed behind it.
    std::string ReadField() {
        if (m_next < m_text.size() && m_text[m_next] == '"') {
            return ReadQuoted();
        }
        const std::size_t end = std::min(m_text.find_first_of(",\n", m_next), m_text.size());
        std::string field = m_text.substr(m_next, end - m_next);
        m_next = end;
        if (field.ends_with('\r') && (end == m_text.size() || m_text[end] == '\n')) {
            field.pop_back();
        }
        return field;
    }

    std::string ReadQuoted() {
        const std::size_t line = m_line;
        std::string field;
        for (++m_next;; ++m_next) {
            const std::size_t quote = m_text.find('"', m_next);
            if (quote == std::string::npos) {
                throw ListError(line, "a quotation mark is not closed");
            }
            field += m_text.substr(m_next, quote - m_next);
            m_next = quote + 1;
            if (m_next >= m_text.size() || m_text[m_next] != '"') {
                break;
            }
            field += '"';
        }
        m_line += static_cast<std::size_t>(std::ranges::count(field, '\n'));
        if (m_text.compare(m_next, 2, "\r\n") == 0) {
            ++m_next;
        }
        if (m_next < m_text.size() && m_text[m_next] != ',' && m_text[m_next] != '\n') {
            throw ListError(line, "a quoted field is followed by more than a comma");
        }
        return field;
    }

    const std::string& m_text;
    std::size_t m_next = 0;
    std::size_t m_line = 1;
};

// The place of a column; that behind the last one when there is no such column.
std::size_t Column(const std::vector<std::string>& header, const char* name) {
    const auto found = std::ranges::find_if(
        header, [&](const std::string& field) { return strcasecmp(field.c_str(), name) == 0; });
    return static_cast<std::size_t>(found - header.begin());
}

// In quotes where it needs them.
std::string Field(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string field = "\"";
    for (const char c : text) {
        field += c;
        if (c == '"') {
            field += '"';
        }
    }
    return field + "\"";
}

bool IsBlank(const Row& row) {
    return row.fields.size() == 1 && row.fields[0].find_first_not_of(" \t") == std::string::npos;
}

} // namespace

bool IsHeaderOfCsv(const std::string& line) {
    std::string text = line;
    std::erase(text, '"');
    const std::vector<std::string> fields = SplitAt(text, ',');
    return Column(fields, "seconds") < fields.size();
}

std::vector<ListedPlace> ParseCsv(const std::string& text) {
    std::vector<ListedPlace> places;
    CsvReader reader(text);
    Row header;
    do {
        reader.Read(header);
    } while (IsBlank(header));
    const std::size_t seconds = Column(header.fields, "seconds");
    const std::size_t title = Column(header.fields, "title");
    for (Row row; reader.Read(row);) {
        if (IsBlank(row)) {
            continue;
        }
        const auto time =
            seconds < row.fields.size() ? ParseNumber(row.fields[seconds]) : std::nullopt;
        if (!time) {
            throw ListError(row.line, "the column 'seconds' holds no number of 0 or more");
        }
        places.push_back({*time, title < row.fields.size() ? row.fields[title] : "", row.line});
    }
    return places;
}

std::string CsvHeader(bool hasFile) {
    return hasFile ? "bytes,seconds,title,file\n" : "bytes,seconds,title\n";
}

std::string CsvRows(const std::vector<CsvPlace>& places, const std::string& file) {
    const std::string end = file.empty() ? "" : std::string(",").append(Field(file));
    std::string text;
    for (const CsvPlace& place : places) {
        text.append(std::to_string(place.bytes)).append(",");
        text.append(SecondsText(place.seconds)).append(",").append(end).append("\n");
    }
    return text;
}
