// qvrl_mkdb OUTPUT SQLFILE...
//
// Builds one shipped database from its SQL text: the files run in the order
// given, in one transaction, on a new file beside OUTPUT that replaces OUTPUT
// only when all of them succeeded. An error names the file and the line of
// the statement that failed.

#include <sqlite3.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "store/StoreText.h"

namespace fs = std::filesystem;

namespace {

struct Connection {
    sqlite3* db = nullptr;
    ~Connection() {
        if (db) sqlite3_close_v2(db);
    }
};

bool Exec(sqlite3* db, const char* sql) {
    char* msg = nullptr;
    if (sqlite3_exec(db, sql, nullptr, nullptr, &msg) == SQLITE_OK) return true;
    std::cerr << "qvrl_mkdb: " << (msg ? msg : "error") << "\n";
    sqlite3_free(msg);
    return false;
}

int LineAt(const std::string& text, size_t offset) {
    int line = 1;
    for (size_t i = 0; i < offset && i < text.size(); ++i)
        if (text[i] == '\n') ++line;
    return line;
}

// Runs every statement of a script; reports the first failure with its line.
bool RunScript(sqlite3* db, const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::cerr << path << ": cannot be read\n";
        return false;
    }
    const std::string text((std::istreambuf_iterator<char>(in)), {});
    const char* begin = text.c_str();
    const char* p = begin;
    while (*p) {
        sqlite3_stmt* stmt = nullptr;
        const char* tail = nullptr;
        int rc = sqlite3_prepare_v2(db, p, -1, &stmt, &tail);
        // The statement starts at the first character that is not blank.
        size_t start = static_cast<size_t>(p - begin);
        while (start < text.size() && (text[start] == ' ' || text[start] == '\n' || text[start] == '\r' ||
                                       text[start] == '\t'))
            ++start;
        if (rc == SQLITE_OK && stmt) {
            while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
            }
            if (rc == SQLITE_DONE) rc = SQLITE_OK;
        }
        if (rc != SQLITE_OK) {
            std::cerr << path << ":" << LineAt(text, start) << ": " << sqlite3_errmsg(db) << "\n";
            sqlite3_finalize(stmt);
            return false;
        }
        sqlite3_finalize(stmt);
        if (!tail || tail == p) break;
        p = tail;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: qvrl_mkdb OUTPUT [SQLFILE...]\n";
        return 2;
    }
    const fs::path output = argv[1];
    fs::path part = output;
    part += ".part";
    std::error_code ec;
    fs::create_directories(output.parent_path().empty() ? fs::path(".") : output.parent_path(), ec);
    fs::remove(part, ec);

    bool ok = true;
    {
        Connection c;
        if (sqlite3_open_v2(part.c_str(), &c.db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK) {
            std::cerr << "qvrl_mkdb: " << part.string() << ": " << sqlite3_errmsg(c.db) << "\n";
            ok = false;
        }
        ok = ok && qvrl::RegisterStoreText(c.db) == SQLITE_OK;
        ok = ok && Exec(c.db, ("PRAGMA application_id = " + std::to_string(qvrl::kStoreApplicationId)).c_str());
        ok = ok && Exec(c.db, "BEGIN");
        for (int i = 2; ok && i < argc; ++i) ok = RunScript(c.db, argv[i]);
        ok = ok && Exec(c.db, "COMMIT");
    }
    if (ok) {
        fs::rename(part, output, ec);
        if (ec) {
            std::cerr << "qvrl_mkdb: " << output.string() << ": " << ec.message() << "\n";
            ok = false;
        }
    }
    if (!ok) fs::remove(part, ec);
    return ok ? 0 : 1;
}
