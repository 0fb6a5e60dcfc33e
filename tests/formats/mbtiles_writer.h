#pragma once

#include <sqlite3.h>

#include <stdexcept>
#include <string>

namespace tolvane::testing {

// An SQLite database the test writes, as a map tool would; a statement
// that fails throws, which fails the test.
class MbtilesWriter {
  public:
    explicit MbtilesWriter(const std::string& path) { sqlite3_open(path.c_str(), &database_); }
    ~MbtilesWriter() { sqlite3_close(database_); }
    MbtilesWriter(const MbtilesWriter&) = delete;
    MbtilesWriter& operator=(const MbtilesWriter&) = delete;

    void Run(const std::string& sql) {
        char* error = nullptr;
        const int result = sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, &error);
        const std::string message = error != nullptr ? error : "";
        sqlite3_free(error);
        if (result != SQLITE_OK) throw std::runtime_error(sql + ": " + message);
    }

    void MakeMbtilesTables() {
        Run("CREATE TABLE metadata (name TEXT, value TEXT);"
            "CREATE TABLE tiles (zoom_level INTEGER, tile_column INTEGER, tile_row INTEGER,"
            " tile_data BLOB);"
            "CREATE UNIQUE INDEX tile_index ON tiles (zoom_level, tile_column, tile_row);");
    }

    void AddTile(int z, int x, int tmsRow, const std::string& bytes) {
        sqlite3_stmt* insert = nullptr;
        sqlite3_prepare_v2(database_, "INSERT INTO tiles VALUES (?, ?, ?, ?)", -1, &insert,
                           nullptr);
        sqlite3_bind_int(insert, 1, z);
        sqlite3_bind_int(insert, 2, x);
        sqlite3_bind_int(insert, 3, tmsRow);
        sqlite3_bind_blob(insert, 4, bytes.data(), static_cast<int>(bytes.size()),
                          SQLITE_TRANSIENT);
        const int result = sqlite3_step(insert);
        sqlite3_finalize(insert);
        if (result != SQLITE_DONE) throw std::runtime_error("a tile could not be written");
    }

  private:
    sqlite3* database_ = nullptr;
};

}  // namespace tolvane::testing
