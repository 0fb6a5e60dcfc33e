#include "core/data/geo_point_file.h"

#include <gtest/gtest.h>

#include <tuple>

#include "core/base/language_file.h"
#include "core/base/string_manager.h"
#include "tests/core/test_support.h"

namespace tolvane {
namespace {

using testing::ReadFileBytes;
using testing::WriteFileBytes;

GeoPoint Point(double latitude, double longitude, const std::string& name) {
    GeoPoint point;
    point.latitude = latitude;
    point.longitude = longitude;
    point.name = name;
    return point;
}

// A point's latitude, longitude, name, speed limit, range, category, voice
// guide and comment, to be compared whole.
using Fields =
    std::tuple<double, double, std::string, int, int, std::string, std::string, std::string>;

Fields Loaded(DynamicList<GeoPoint>& points, int index) {
    points.SeekTo(index);
    const GeoPoint& p = points.Current();
    return {p.latitude,       p.longitude, p.name,       p.speedLimit,
            p.proximityRange, p.category,  p.voiceGuide, p.comment};
}

TEST(GeoPointFileTest, SavesNineColumnsInWindows1252) {
    testing::TemporaryFolder folder;
    DynamicList<GeoPoint> points;
    GeoPoint home = Point(52.5, -1.25, "Home");
    home.speedLimit = 50;
    home.category = "Bank";
    home.voiceGuide = "Turn \"left\",\r\nnow";
    home.comment = "gate code 12, ring twice";
    points.Append(home);
    GeoPoint cafe = Point(-33.875, 151.25, "Café €");
    cafe.proximityRange = 0;
    cafe.comment = "two\r\nlines";
    points.Append(cafe);
    GeoPoint odd = Point(0, 0, "Smith, John");
    odd.category = "a,b";
    odd.proximityRange = 120;
    points.Append(odd);

    const std::string path = folder.File("Waypoint.csv");
    WriteFileBytes(path, std::string(4000, 'x'));  // replaced, not overwritten in place
    ASSERT_TRUE(SavePointFile(path, points));
    EXPECT_EQ(ReadFileBytes(path),
              "-1.250000,52.500000,Home@50,Bank,,Turn  left    now,,,gate code 12, ring twice\r\n"
              "151.250000,-33.875000,Caf\xE9 \x80,,0,,,,two  lines\r\n"
              "0.000000,0.000000,Smith  John,a b,120,,,,\r\n");

    DynamicList<GeoPoint> back;
    EXPECT_EQ(LoadPointFile(path, back).recordsRead, 3);
    EXPECT_EQ(Loaded(back, 0), (Fields{52.5, -1.25, "Home", 50, -1, "Bank", "Turn  left    now",
                                       "gate code 12, ring twice"}));
    EXPECT_EQ(Loaded(back, 1), (Fields{-33.875, 151.25, "Café €", 0, 0, "", "", "two  lines"}));
}

TEST(GeoPointFileTest, HostileLinesAreSkippedOrCutToTheFieldLimits) {
    testing::TemporaryFolder folder;
    const std::string path = folder.File("poi.csv");
    const std::string longText(300, 'n');
    const std::string overlongLine =
        "7,8," + longText + "@30," + longText + ",15," + longText + ",,," + longText + "\r\n";
    WriteFileBytes(path,
                   "1,2\r\n"                                    // too few columns
                   "x,2,Name\r\n"                               // longitude not a number
                   "1,95,Name\r\n"                              // latitude out of range
                   "\n\r\n"                                     // empty lines
                   "3, 4 ,Short\n"                              // LF only, blanks
                   "5,6,a@b,Bar,far,say \"hi\",x,y,c1,c2,c3\r"  // CR only, extra commas
                       + overlongLine +                         // every text too long
                       "9,10,\xC4pfel \xA9 \x9C,Caf\xE9,-1,\xE8t\xE9\r\n");  // Windows-1252

    DynamicList<GeoPoint> points;
    points.Append(Point(0, 0, "kept"));
    const CsvReadResult result = LoadPointFile(path, points);
    EXPECT_EQ(result.recordsRead, 4);
    EXPECT_EQ(result.linesSkipped, 3);
    ASSERT_EQ(points.Count(), 5);  // appended after what the list held

    EXPECT_EQ(Loaded(points, 1), (Fields{4, 3, "Short", 0, -1, "", "", ""}));
    EXPECT_EQ(Loaded(points, 2), (Fields{6, 5, "a@b", 0, -1, "Bar", "say  hi ", "c1,c2,c3"}));
    EXPECT_EQ(Loaded(points, 3), (Fields{8, 7, std::string(19, 'n'), 30, 15, std::string(49, 'n'),
                                         std::string(99, 'n'), std::string(255, 'n')}));
    EXPECT_EQ(Loaded(points, 4), (Fields{10, 9, "Äpfel © œ", 0, -1, "Café", "èté", ""}));

    EXPECT_FALSE(LoadPointFile(folder.File("none.csv"), points).opened);
}

TEST(GeoPointFileTest, CategoryLookupsKeepTheMisspelledDisplayName) {
    std::string text = "informaion";
    EXPECT_EQ(CategoryFromText(text), 0);
    EXPECT_EQ(text, "informaion");
    for (const std::string input : {"INFORMATION", "00157", "information"}) {
        text = input;
        EXPECT_EQ(CategoryFromText(text), 6) << input;
        EXPECT_EQ(text, "Information");
    }
    EXPECT_EQ(CategoryName(6), "Informaion");
    // Only whole names match; indexes outside the table have no name.
    text = "Car ";
    EXPECT_EQ(CategoryFromText(text), 0);
    EXPECT_EQ(CategoryName(0), "");
    EXPECT_EQ(CategoryName(31), "");
}

TEST(GeoPointFileTest, AFailedSaveIsReportedWithThePath) {
    testing::TemporaryFolder folder;
    folder.UseAsProgramFolder();
    WriteFileBytes(folder.File("tolvane_ENU.dat"),
                   EncodeLanguageFile({{kStringPointFileNotSaved, "Could not save %s."}}));
    ASSERT_TRUE(CStringManager::GetInstance().Load(kLanguageEnglish, kSubLanguageEnglishUs));

    DynamicList<GeoPoint> points;
    points.Append(Point(1, 2, "A"));
    const std::string path = folder.File("gone/Waypoint.csv");
    EXPECT_FALSE(SavePointFile(path, points));
    EXPECT_EQ(PointFileNotSavedMessage(path), "Could not save " + path + ".");
}

}  // namespace
}  // namespace tolvane
