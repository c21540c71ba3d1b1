// Sheets of a PostGIS database: what the server is asked, and that the drawing is the same as that of a file.
#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <ogrsf_frmts.h>
#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>

#include "tests/support/random.h"
#include "tests/zenro/program.h"

namespace {

using namespace zm::test;
namespace fs = std::filesystem;

int Command(const std::string& line) {
    return std::system(line.c_str());
}

// The programs of the newest server that is installed with PostGIS; empty where there is none.
fs::path ServerPrograms() {
    fs::path newest;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator("/usr/lib/postgresql", error))
        if (fs::exists(entry.path() / "bin/initdb") && fs::exists(entry.path() / "lib/postgis-3.so"))
            newest = std::max(newest, entry.path() / "bin");
    return newest;
}

// A server of the test's own: no port of the network, a folder of its own, an end with the test.
class Server {
 public:
    bool Start() {
        const fs::path programs = ServerPrograms();
        const passwd* user = geteuid() == 0 ? getpwnam("postgres") : getpwuid(geteuid());
        if (programs.empty() || user == nullptr) return false;
        std::string name = (fs::temp_directory_path() / "zm_pg_XXXXXX").string();  // a socket's path is short
        if (mkdtemp(name.data()) == nullptr || chown(name.c_str(), user->pw_uid, user->pw_gid) != 0) return false;
        m_folder = name;
        m_run = "cd '" + name + "' && " + (geteuid() == 0 ? "runuser -u postgres -- '" : "'") + programs.string() + "/";
        if (Command(m_run + "initdb' -D data -A trust -U postgres -E UTF8 --locale=C --no-sync >init.txt") != 0)
            return false;
        m_runs = Command(m_run + "pg_ctl' -D data -s -w -l log -o \"-k '" + name +
                         "' -c listen_addresses= -c fsync=off -c log_statement=all\" start") == 0;
        return m_runs && Statement("CREATE EXTENSION postgis") == 0;
    }
    ~Server() {
        if (m_runs) Command(m_run + "pg_ctl' -D data -s -m immediate stop");
        std::error_code ignored;
        if (!m_folder.empty()) fs::remove_all(m_folder, ignored);
    }
    std::string Name() const { return "PG:host=" + m_folder.string() + " dbname=postgres user=postgres"; }
    int Statement(const std::string& sql) const {
        return Command("psql -q -h '" + m_folder.string() + "' -U postgres -v ON_ERROR_STOP=1 -c '" + sql +
                       "' postgres");
    }
    /// What the server was asked since the last call, in small letters.
    std::string Log() {
        const std::string all = ReadFile(m_folder / "log");
        std::string fresh = all.substr(std::min(m_read, all.size()));
        m_read = all.size();
        std::transform(fresh.begin(), fresh.end(), fresh.begin(), [](unsigned char c) { return std::tolower(c); });
        return fresh;
    }

 private:
    fs::path m_folder;
    std::string m_run;
    bool m_runs = false;
    std::size_t m_read = 0;
};

class PostGis : public testing::Test {
 protected:
    // 2000 lines over 1 km by 1 km with attributes that no rule uses, in a GeoPackage and in the database, in another
    // order of rows.
    void SetUp() override {
        if (!m_server.Start())
            GTEST_SKIP() << "no server of PostgreSQL with PostGIS can be started (postgresql-postgis)";
        Random random;
        std::string features;
        for (int i = 0; i < 2000; ++i) {
            const int x = 40512000 + random.Int(0, 999), y = 3456000 + random.Int(0, 999);
            const auto place = [](int east, int north) {
                return "[" + std::to_string(east) + "," + std::to_string(north) + "]";
            };
            features += (i == 0 ? "" : ",") +
                        LineFeature(place(x, y) + "," + place(x + random.Int(1, 30), y + random.Int(1, 30)),
                                    R"("name":"r)" + std::to_string(i % 97) + R"(","spare":"x","grade":)" +
                                        std::to_string(i % 3) + R"(,"t":"2026-01-)" + (i < 1999 ? "05" : "09") + "\"");
        }
        m_zenro.File("in.geojson", Collection(features));
        m_zenro.File("r.rules", "grade = 2 -> layer 251, symbol 250\n* -> layer 250, symbol 250, label name\n");
        ASSERT_EQ(
            Command("cd '" + m_zenro.folder().string() + "' && ogr2ogr -f GPKG in.gpkg in.geojson -nln lines && " +
                    "ogr2ogr -f PostgreSQL '" + m_server.Name() + "' in.gpkg lines -lco FID=number"),
            0);
        ASSERT_EQ(m_server.Statement("UPDATE lines SET spare = 2 WHERE number % 7 = 0"), 0);  // rows move to the end
        m_server.Log();
    }
    Outcome Draw(const std::string& input, const std::string& name, const std::string& sheet) {
        return m_zenro.Run({"draw", input, "--rules", "./r.rules", "--scale", "500", "--sheet", sheet, "--title", "t",
                            "--layer", "lines", "--json", "-o", name + ".svg", "-o", name + ".rec", "-o",
                            name + ".dwg"});
    }
    Server m_server;
    Program m_zenro;
};

TEST_F(PostGis, ASheetAsksForItsWindowAndForWhatRulesUse) {
    const std::string sheet = "40512200,3456200,40512450,3456450";
    const Outcome database = Draw(m_server.Name(), "database", sheet), file = Draw("in.gpkg", "file", sheet);
    ASSERT_EQ(database.status, 0) << database.err;
    ASSERT_EQ(file.status, 0) << file.err;
    for (const char* form : {".svg", ".rec", ".dwg"})
        EXPECT_TRUE(ReadFile(m_zenro / (std::string("database") + form)) ==
                    ReadFile(m_zenro / (std::string("file") + form)))
            << form;
    const auto j = nlohmann::json::parse(database.out);
    EXPECT_GT(j["features"].get<int>(), 50);
    EXPECT_LT(j["features_read"].get<int>(), 300);
    EXPECT_EQ(Draw(m_server.Name(), "empty", "40522200,3456200,40522450,3456450").status, 6);

    const std::string log = m_server.Log();
    EXPECT_EQ(Count(log,
                    "cursor for select * from (select \"number\" as ogc_fid, \"geom\", \"name\", null as unused_1, "
                    "\"grade\", null as unused_3 from \"lines\")"),
              2)
        << log;
    EXPECT_EQ(Count(log, "where \"geom\" && st_setsrid('box3d("), 2) << log;
    EXPECT_EQ(Count(log, "spare"), 0) << log;
    EXPECT_EQ(Count(log, "count("), 0) << log;
    EXPECT_EQ(Count(log, "extent"), 0) << log;
}

// Where a statement of our own would not be the same the driver's is taken.
TEST_F(PostGis, TablesOfOddNamesAndViewsAreDrawnToo) {
    ASSERT_EQ(m_server.Statement(R"(
        CREATE SCHEMA "north";
        CREATE TABLE "north"."odd ""name" AS SELECT * FROM lines;
        ALTER TABLE "north"."odd ""name" ADD PRIMARY KEY (number), ADD "a ""b" text;
        CREATE TABLE "dotted.lines" AS SELECT * FROM lines;
        ALTER TABLE "dotted.lines" ADD PRIMARY KEY (number);
        CREATE TABLE "north.lines" AS SELECT * FROM lines LIMIT 7;
        ALTER TABLE "north.lines" ADD PRIMARY KEY (number);
        CREATE TABLE "north"."lines" AS SELECT * FROM lines;
        ALTER TABLE "north"."lines" ADD PRIMARY KEY (number);
        CREATE TABLE second AS SELECT number AS id, 5 AS ogc_fid, name, grade, spare, geom FROM lines;
        ALTER TABLE second ADD PRIMARY KEY (id);
        CREATE VIEW view AS SELECT name, grade, spare, geom FROM lines)"),
              0);
    m_server.Log();
    const auto shapes = [&](const char* layer) {
        const Outcome r = m_zenro.Run({"draw", m_server.Name(), "--rules", "./r.rules", "--scale", "1000", "--sheet",
                                       "40512000,3456000,40512500,3456500", "--layer", layer, "--json", "--overwrite",
                                       "-o", "a.svg"});
        EXPECT_EQ(r.status, 0) << layer << r.err;
        return r.status == 0 ? nlohmann::json::parse(r.out)["features"].get<int>() : -1;
    };
    const int all = shapes("lines");
    EXPECT_GT(all, 300);
    m_server.Log();
    EXPECT_EQ(shapes("north.odd*"), all);
    EXPECT_EQ(Count(m_server.Log(), "spare"), 0);
    for (const char* layer : {"second", "view", "dotted.lines"}) EXPECT_EQ(shapes(layer), all) << layer;
    // A table of a schema, and one of the same name with a dot: GDAL shows one of them.
    const Outcome twin =
        m_zenro.Run({"draw", m_server.Name(), "--rules", "./r.rules", "--scale", "2000", "--sheet",
                     "40512000,3456000,40513050,3457050", "--layer", "north.lines", "--json", "-o", "b.svg"});
    ASSERT_EQ(twin.status, 0) << twin.err;
    GDALAllRegister();
    GDALDataset* data = GDALDataset::Open(m_server.Name().c_str(), GDAL_OF_VECTOR);
    ASSERT_NE(data, nullptr);
    for (OGRLayer* layer : data->GetLayers()) {
        if (layer->GetName() != std::string("north.lines")) continue;
        EXPECT_EQ(nlohmann::json::parse(twin.out)["features"].get<int>(), static_cast<int>(layer->GetFeatureCount()));
    }
    GDALClose(data);
    m_zenro.File("r.rules", "ogc_fid = 5 -> layer 250, symbol 250\n");  // a field of the name of the driver's number
    EXPECT_EQ(shapes("second"), all);
}

TEST_F(PostGis, ChangedSinceComparesInTheDatabaseOrRefuses) {
    ASSERT_EQ(m_server.Statement(R"(ALTER TABLE lines ADD "in""ch" text; UPDATE lines SET "in""ch" = t)"), 0);
    ASSERT_EQ(m_zenro
                  .Run({"series", "plan", m_server.Name(), "--rules", "./r.rules", "--scale", "1000", "--within",
                        "40512000,3456000,40513000,3457000", "-o", "plan.gpkg", "--quiet"})
                  .status,
              0);
    ASSERT_EQ(m_zenro.Run({"series", "draw", "plan.gpkg", "--quiet"}).status, 0);
    const auto due = [&](const char* since, const char* field) {
        return m_zenro.Run(
            {"series", "draw", "plan.gpkg", "--dry-run", "--changed-since", since, "--changed-field", field});
    };
    EXPECT_EQ(Count(due("2026-01-01", "t").out, "\n"), 4);
    const int one = Count(due("2026-01-06", "t").out, "\n");  // of one line, perhaps across an edge
    EXPECT_TRUE(one == 1 || one == 2) << one;
    EXPECT_EQ(Count(due("2", "grade").out, "\n"), 4);
    EXPECT_EQ(Count(due("1.5", "grade").out, "\n"), 4);  // as numbers: the database has no such text of a whole number
    EXPECT_EQ(Count(due("3", "grade").out, "\n"), 0);
    EXPECT_EQ(Count(due("2026-01-06", "in\"ch").out, "\n"), one);
    EXPECT_EQ(Count(due("2026-03-01", "in\"ch").out, "\n"), 0);
    for (const auto& [since, field] : {std::pair("2026-01-06", "grade"), std::pair("yesterday morning", "t")}) {
        const Outcome r = due(since, field);
        EXPECT_EQ(r.status, 2) << r.out;
        EXPECT_NE(r.err.find(std::string("the field \"") + field + "\" cannot be compared with \"" + since + "\""),
                  std::string::npos)
            << r.err;
    }
}

}  // namespace
