#include "core/data/geo_point_file.h"

#include <gtest/gtest.h>

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

GeoPoint Loaded(DynamicList<GeoPoint>& points, int index) {
    points.SeekTo(index);
    return points.Current();
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
    const GeoPoint first = Loaded(back, 0);
    EXPECT_EQ(first.name, "Home");
    EXPECT_EQ(first.speedLimit, 50);
    EXPECT_EQ(first.proximityRange, -1);
    EXPECT_EQ(first.comment, "gate code 12, ring twice");
    const GeoPoint second = Loaded(back, 1);
    EXPECT_EQ(second.name, "Café €");
    EXPECT_EQ(second.proximityRange, 0);
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

    const GeoPoint shortLine = Loaded(points, 1);
    EXPECT_DOUBLE_EQ(shortLine.latitude, 4);
    EXPECT_EQ(shortLine.name, "Short");
    EXPECT_EQ(shortLine.category, "");
    EXPECT_EQ(shortLine.proximityRange, -1);

    const GeoPoint extra = Loaded(points, 2);
    EXPECT_EQ(extra.name, "a@b");
    EXPECT_EQ(extra.speedLimit, 0);
    EXPECT_EQ(extra.proximityRange, -1);
    EXPECT_EQ(extra.voiceGuide, "say  hi ");
    EXPECT_EQ(extra.comment, "c1,c2,c3");

    const GeoPoint overlong = Loaded(points, 3);
    EXPECT_EQ(overlong.name, std::string(19, 'n'));
    EXPECT_EQ(overlong.speedLimit, 30);
    EXPECT_EQ(overlong.category, std::string(49, 'n'));
    EXPECT_EQ(overlong.proximityRange, 15);
    EXPECT_EQ(overlong.voiceGuide, std::string(99, 'n'));
    EXPECT_EQ(overlong.comment, std::string(255, 'n'));

    const GeoPoint accented = Loaded(points, 4);
    EXPECT_EQ(accented.name, "Äpfel © œ");
    EXPECT_EQ(accented.category, "Café");
    EXPECT_EQ(accented.voiceGuide, "èté");

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
