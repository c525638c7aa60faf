#pragma once
// A zip archive of uncompressed parts, enough to make small .xlsx workbooks
// in tests and fuzz targets without a zip library of their own.
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace qvrl::test {

inline uint32_t Crc32(const std::string& s) {
    uint32_t c = 0xFFFFFFFFu;
    for (unsigned char b : s) {
        c ^= b;
        for (int k = 0; k < 8; ++k) c = (c >> 1) ^ (0xEDB88320u & (0u - (c & 1u)));
    }
    return ~c;
}

inline std::string StoredZip(const std::vector<std::pair<std::string, std::string>>& parts) {
    auto put = [](std::string& o, uint32_t v, int bytes) {
        for (int i = 0; i < bytes; ++i) o.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
    };
    std::string out, dir;
    for (const auto& [name, data] : parts) {
        const uint32_t offset = static_cast<uint32_t>(out.size()), crc = Crc32(data);
        const uint32_t size = static_cast<uint32_t>(data.size()), len = static_cast<uint32_t>(name.size());
        put(out, 0x04034b50u, 4), put(out, 20, 2), put(out, 0, 2), put(out, 0, 2), put(out, 0, 4);
        put(out, crc, 4), put(out, size, 4), put(out, size, 4), put(out, len, 2), put(out, 0, 2);
        out += name + data;
        put(dir, 0x02014b50u, 4), put(dir, 20, 2), put(dir, 20, 2), put(dir, 0, 2), put(dir, 0, 2), put(dir, 0, 4);
        put(dir, crc, 4), put(dir, size, 4), put(dir, size, 4), put(dir, len, 2), put(dir, 0, 2), put(dir, 0, 2);
        put(dir, 0, 2), put(dir, 0, 2), put(dir, 0, 4), put(dir, offset, 4);
        dir += name;
    }
    const uint32_t at = static_cast<uint32_t>(out.size()), n = static_cast<uint32_t>(parts.size());
    out += dir;
    put(out, 0x06054b50u, 4), put(out, 0, 2), put(out, 0, 2), put(out, n, 2), put(out, n, 2);
    put(out, static_cast<uint32_t>(dir.size()), 4), put(out, at, 4), put(out, 0, 2);
    return out;
}

// A workbook of the given sheets, each given as its sheetData rows.
inline std::string Workbook(const std::vector<std::pair<std::string, std::string>>& sheets,
                            const std::string& sharedStrings = "") {
    std::string book = "<workbook xmlns:r=\"r\"><sheets>", rels = "<Relationships>";
    std::vector<std::pair<std::string, std::string>> parts;
    for (size_t i = 0; i < sheets.size(); ++i) {
        const std::string n = std::to_string(i + 1);
        book += "<sheet name=\"" + sheets[i].first + "\" sheetId=\"" + n + "\" r:id=\"rId" + n + "\"/>";
        rels += "<Relationship Id=\"rId" + n + "\" Target=\"worksheets/sheet" + n + ".xml\"/>";
        parts.push_back({"xl/worksheets/sheet" + n + ".xml",
                         "<worksheet><sheetData>" + sheets[i].second + "</sheetData></worksheet>"});
    }
    parts.push_back({"xl/workbook.xml", book + "</sheets></workbook>"});
    parts.push_back({"xl/_rels/workbook.xml.rels", rels + "</Relationships>"});
    if (!sharedStrings.empty()) parts.push_back({"xl/sharedStrings.xml", "<sst>" + sharedStrings + "</sst>"});
    return StoredZip(parts);
}

}  // namespace qvrl::test
