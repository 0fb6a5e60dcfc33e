// The GPS Info and Satellites views against the numbers they are built
// to: texts, fonts, colours, ring radii and satellite positions, by day
// and by night.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "core/base/string_manager.h"
#include "core/geo/units.h"
#include "core/views/gps_info_view.h"
#include "core/views/satellites_view.h"
#include "tests/core/views/recording_canvas.h"

namespace tolvane {
namespace {

using testing::RecordingCanvas;
using Kind = RecordingCanvas::Kind;

constexpr int kBaseHeight = 15;

RecordingCanvas Paint(const AppState& app, void (*painter)(Canvas&, const ViewContext&),
                      int width = 480, int height = 640) {
    const FontSet fonts(kBaseHeight);
    const ViewLayout layout = LayOutViews(width, height, false, false, fonts);
    RecordingCanvas canvas;
    painter(canvas, ViewContext{app, layout, fonts, 0});
    return canvas;
}

std::string Label(std::uint32_t id) {
    return LanguageText(id);
}

TEST(GpsInfoViewTest, ShowsTheFixInItsFontsAndColoursByDayAndNight) {
    AppState app;
    GpsState& gps = app.gps;
    gps.connected = gps.fixValid = 1;
    gps.latitude = -27.25;
    gps.longitude = 153.5;
    gps.altitude = 3.7;
    gps.speedKnots = 2.4;
    gps.fixTime = *CivilToFileTime({2007, 4, 8, 9, 53, 59});
    gps.hdop = 1.1;
    gps.vdop = 2.4;
    gps.pdop = 2.6;
    gps.fixType = 3.0;
    const FontSet fonts(kBaseHeight);
    for (const int night : {0, 1}) {
        app.options.nightView = night;
        const RecordingCanvas canvas = Paint(app, PaintGpsInfoView);
        EXPECT_EQ(canvas.Texts(), (std::vector<std::string>{
                                      "S   27\u00B015'00.00\"", "E 153\u00B030'00.00\"",
                                      Label(10400) + " 3.70 m   " + Label(10402) + " 4.44 km/h",
                                      "2007-04-08  09:53:59", "hdop: 1.10", "vdop: 2.40",
                                      "pdop: 2.60", "3D GPS Fix"}));
        const std::vector<RecordingCanvas::Call> texts = canvas.Of(Kind::kText);
        const int expectedSlots[] = {27, 27, 2, 2, 17, 17, 17, 20};
        const Color ink = night ? 0xFFFFFF : 0x000000;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            EXPECT_EQ(texts[i].font, fonts.Slot(expectedSlots[i])) << texts[i].text;
            EXPECT_EQ(texts[i].outline, ink) << texts[i].text;
            if (i > 0 && i < 5) {
                EXPECT_GT(texts[i].box.top, texts[i - 1].box.top);
            }
        }
        EXPECT_EQ(canvas.calls.front().fill, night ? 0x000000u : 0xFFFFFFu);
        const std::vector<RecordingCanvas::Call> lines = canvas.Of(Kind::kLine);
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_EQ(lines[0].outline, ink);
        EXPECT_EQ(lines[0].box.left, 0);  // across the whole view
        EXPECT_EQ(lines[0].box.right, 479);
        // The separator lies between the altitude line and the time.
        EXPECT_GT(lines[0].box.top, texts[2].box.bottom);
        EXPECT_LT(lines[0].box.top, texts[3].box.top);
    }
    // The coordinates are the largest, bold text of the view.
    EXPECT_EQ(fonts.Slot(27).weight, 700);
    for (const int slot : {2, 17, 20}) EXPECT_GT(fonts.Slot(27).height, fonts.Slot(slot).height);
    EXPECT_EQ(fonts.Slot(17).weight, 0);
    EXPECT_EQ(fonts.Slot(20).weight, 0);
}

TEST(GpsInfoViewTest, BeforeTheFirstFixReadsZeroWithThePlaceholderTime) {
    AppState app;
    app.options.unitSystem = kImperial;
    app.gps.altitude = 3.7;
    app.gps.speedKnots = 2.4;
    const std::vector<std::string> texts = Paint(app, PaintGpsInfoView).Texts();
    EXPECT_EQ(texts[0], "N   00\u00B000'00.00\"");
    EXPECT_EQ(texts[1], "E 000\u00B000'00.00\"");
    // Two blanks between the halves outside the Metric system.
    EXPECT_EQ(texts[2], Label(10400) + " 12.14 ft  " + Label(10402) + " 2.76 MPH");
    EXPECT_EQ(texts[3], "- - / - - / - -    - - : - - : - -");
    EXPECT_EQ(texts.back(), "GPS Fix N/A");
}

struct Satellite {
    int prn;
    int snr;
    double elevation;
    double azimuth;
};

void PutSatellites(GpsState& gps, const std::vector<Satellite>& satellites) {
    gps.satellitesInView = static_cast<int>(satellites.size());
    for (std::size_t i = 0; i < satellites.size(); ++i) {
        gps.satPrn[i] = satellites[i].prn;
        gps.satSnr[i] = satellites[i].snr;
        gps.satElevation[i] = satellites[i].elevation;
        gps.satAzimuth[i] = satellites[i].azimuth;
    }
}

TEST(GpsInfoViewTest, WhileSearchingShowsTheTimeAndTheSatellitesHeardBelowTheFixType) {
    AppState app;
    app.gpsRunning = true;
    app.gps.connected = 1;
    app.instruments.firstFix.searching = true;
    app.instruments.firstFix.searchingSeconds = 42;
    // Two of the four in view are heard; a satellite beyond the count of
    // those in view is an old entry and not heard.
    PutSatellites(app.gps, {{5, 0, 90, 0}, {12, 38, 0, 90}, {30, 21, 30, 180}, {7, 0, 60, 300}});
    app.gps.satSnr[4] = 50;
    const std::string searching = FillLanguageText(10410, {"0:42"});
    const std::string heard = FillLanguageText(10411, {"2", "38"});
    EXPECT_EQ(searching, "Searching 0:42");
    EXPECT_EQ(heard, "2 satellites heard, best 38 dB-Hz");
    EXPECT_EQ(SearchingLine(app), searching + " \u2014 " + heard);

    // One line where it fits, under the fix type; two on a narrow window.
    const std::vector<std::string> texts = Paint(app, PaintGpsInfoView, 1280, 800).Texts();
    ASSERT_EQ(texts.size(), 9u);
    EXPECT_EQ(texts[7], "GPS Fix N/A");
    EXPECT_EQ(texts[8], SearchingLine(app));
    const RecordingCanvas narrow = Paint(app, PaintGpsInfoView, 240, 320);
    const std::vector<RecordingCanvas::Call> rows = narrow.Of(Kind::kText);
    ASSERT_EQ(rows.size(), 10u);
    EXPECT_EQ(rows[8].text, searching);
    EXPECT_EQ(rows[9].text, heard);
    EXPECT_GT(rows[9].box.top, rows[8].box.bottom);
    EXPECT_LE(rows[9].box.bottom, 320);

    app.gps.satSnr[1] = 0;
    EXPECT_EQ(SearchingTexts(app)[1], "1 satellite heard, 21 dB-Hz");
    app.gps.satSnr[2] = 0;
    EXPECT_EQ(SearchingTexts(app)[1], "No satellites heard yet");
    // Nothing once the first fix came, nor while the GPS is off.
    app.gpsRunning = false;
    EXPECT_TRUE(SearchingLine(app).empty());
    app.gpsRunning = true;
    app.instruments.firstFix.searching = false;
    EXPECT_EQ(Paint(app, PaintGpsInfoView).Texts().size(), 8u);
}

Point CentreOf(const Rect& box) {
    return {(box.left + box.right) / 2, (box.top + box.bottom) / 2};
}

TEST(SatellitesViewTest, DrawsRingsDiscsTitleAndLegendToTheirNumbers) {
    AppState app;
    app.gps.satellitesUsed = 3;
    PutSatellites(app.gps, {{5, 0, 90, 0}, {12, 15, 0, 90}, {30, 45, 30, 180}, {7, 120, 60, 300}});
    const FontSet fonts(kBaseHeight);
    const int barHeight = LayOutViews(480, 640, false, false, fonts).barHeight;
    for (const int night : {0, 1}) {
        app.options.nightView = night;
        const RecordingCanvas canvas = Paint(app, PaintSatellitesView);
        const std::vector<RecordingCanvas::Call> discs = canvas.Of(Kind::kEllipse);
        ASSERT_EQ(discs.size(), 3u + 4u);

        // The horizon, then the 30 and 60 degree rings, drawn inside their
        // true radii by a tenth and a fifth of the bar height (24 here).
        const Point c = CentreOf(discs[0].box);
        const int r = discs[0].box.Width() / 2;
        EXPECT_EQ(discs[1].box.Width() / 2,
                  static_cast<int>(r * std::cos(M_PI / 6) - barHeight / 10));
        EXPECT_EQ(discs[2].box.Width() / 2, static_cast<int>(r * 0.5 - barHeight / 5));
        EXPECT_EQ(CentreOf(discs[1].box), c);
        const Color bands[] = {night ? 0x000000u : 0xFFFFFFu, night ? 0x2C2C2Cu : 0xF4F4F4u,
                               night ? 0x585858u : 0xE3E3E3u};
        for (int i = 0; i < 3; ++i) EXPECT_EQ(discs[i].fill, bands[i]);

        // Overhead at the centre, on the horizon to the east, at 30 degrees
        // due south (just outside the 30 degree ring), at 60 degrees to the
        // north-west; the disc radius is half the diagonal of "09".
        const Font numberFont = fonts.Slot(kSkyLegendFontSlot);
        const int discRadius =
            static_cast<int>(std::hypot(numberFont.height, numberFont.height) / 2 + 0.5);
        const Point expected[] = {c,
                                  {c.x + r, c.y},
                                  {c.x, c.y + static_cast<int>(r * std::cos(M_PI / 6))},
                                  {c.x + static_cast<int>(std::sin(300 * M_PI / 180) * r * 0.5),
                                   c.y - static_cast<int>(std::cos(300 * M_PI / 180) * r * 0.5)}};
        const Color fills[] = {0xFFFFFF, 0xFF9900, 0x00CCCC, 0x9933FF};
        for (int i = 0; i < 4; ++i) {
            const RecordingCanvas::Call& disc = discs[3 + i];
            EXPECT_EQ(CentreOf(disc.box), expected[i]) << i;
            EXPECT_EQ(disc.box.Width(), 2 * discRadius);
            EXPECT_EQ(disc.fill, fills[i]);
            // Untracked: outlined, black number; tracked: no outline, white number.
            EXPECT_EQ(disc.outline == kNoColor, i > 0);
        }
        EXPECT_GT(CentreOf(discs[5].box).y - c.y, discs[1].box.Width() / 2);

        const std::vector<RecordingCanvas::Call> texts = canvas.Of(Kind::kText);
        const auto text = [&texts](const std::string& wanted) {
            for (const RecordingCanvas::Call& call : texts) {
                if (call.text == wanted) return call;
            }
            ADD_FAILURE() << "no text " << wanted;
            return RecordingCanvas::Call{};
        };
        const RecordingCanvas::Call title = text(Label(10405) + " 3/4");
        EXPECT_EQ(title.font, fonts.Slot(23));
        EXPECT_EQ(title.outline, night ? 0xFAFBFDu : 0x646567u);
        for (const char* direction : {"N", "E", "S", "W"}) {
            EXPECT_EQ(text(direction).font, fonts.Slot(23));
            EXPECT_EQ(text(direction).outline, night ? 0xFFFFFFu : 0x000000u);
        }
        EXPECT_EQ(text("3").font, fonts.Slot(18));  // "30" is drawn as "3" and "0"
        EXPECT_EQ(text("SNR").font, fonts.Slot(24));
        EXPECT_EQ(text("12").outline, 0xFFFFFFu);
        EXPECT_EQ(text("5").outline, 0x000000u);
        // The legend's six boxes in the band colours, each before its bound.
        std::vector<Color> legend;
        for (const RecordingCanvas::Call& box : canvas.Of(Kind::kRectangle)) {
            if (box.fill != (night ? 0x000000u : 0xFFFFFFu)) legend.push_back(box.fill);
        }
        EXPECT_EQ(legend,
                  (std::vector<Color>{0xFF0000, 0xFF9900, 0xFFFF00, 0x66CC00, 0x00CCCC, 0x0066FF}));
        const std::vector<std::string> all = canvas.Texts();
        const auto snr = std::find(all.begin(), all.end(), "SNR");
        ASSERT_LE(snr + 8, all.end());
        EXPECT_EQ(std::vector<std::string>(snr + 1, snr + 8),
                  (std::vector<std::string>{"0", "10", "20", "30", "40", "50", "99"}));
    }
    // An empty sky draws the plot, the title and the legend only.
    const RecordingCanvas empty = Paint(AppState{}, PaintSatellitesView);
    EXPECT_EQ(empty.Of(Kind::kEllipse).size(), 3u);
    EXPECT_EQ(empty.Texts().front(), Label(10405) + " 0/0");
}

}  // namespace
}  // namespace tolvane
