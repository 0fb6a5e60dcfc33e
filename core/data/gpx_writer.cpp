#include "core/data/gpx_writer.h"

#include "core/base/csv_text.h"

namespace tolvane {
namespace {

constexpr char kGpxHead[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<gpx version=\"1.1\" creator=\"Tolvane GPS Utilities\"\n"
    "     xmlns=\"http://www.topografix.com/GPX/1/1\"\n"
    "     xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"\n"
    "     xsi:schemaLocation=\"http://www.topografix.com/GPX/1/1 "
    "http://www.topografix.com/GPX/1/1/gpx.xsd\">\n";
constexpr char kGpxTail[] = "</gpx>\n";

// Escapes the markup characters. XML 1.0 has no way to carry the control
// characters other than tab and the line ends, so they become blanks.
std::string XmlText(const std::string& text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                const bool control =
                    static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
                out += control ? ' ' : c;
        }
    }
    return out;
}

std::string Element(const char* tag, const std::string& text, const char* indent) {
    if (text.empty()) return {};
    return FormatText("%s<%s>%s</%s>\n", indent, tag, XmlText(text).c_str(), tag);
}

// The children of <wpt> and <rtept> in the order the schema demands: name,
// cmt, desc, then type.
std::string PointElement(const char* tag, const GeoPoint& point, const char* indent) {
    const std::string inner = std::string(indent) + "  ";
    return FormatText("%s<%s lat=\"%.6f\" lon=\"%.6f\">\n", indent, tag, point.latitude,
                      point.longitude) +
           Element("name", point.name, inner.c_str()) +
           Element("cmt", point.comment, inner.c_str()) +
           Element("desc", point.voiceGuide, inner.c_str()) +
           Element("type", point.category, inner.c_str()) + FormatText("%s</%s>\n", indent, tag);
}

}  // namespace

std::string WaypointsGpx(const std::vector<GeoPoint>& points) {
    std::string document = kGpxHead;
    for (const GeoPoint& point : points) document += PointElement("wpt", point, "  ");
    return document + kGpxTail;
}

std::string RouteGpx(const std::string& name, const std::vector<GeoPoint>& points) {
    std::string document = std::string(kGpxHead) + "  <rte>\n" + Element("name", name, "    ");
    for (const GeoPoint& point : points) document += PointElement("rtept", point, "    ");
    return document + "  </rte>\n" + kGpxTail;
}

bool SaveGpxFile(const std::string& path, const std::string& document) {
    FilePointer file(std::fopen(path.c_str(), "wb"));
    if (!file) return false;
    const bool written =
        std::fwrite(document.data(), 1, document.size(), file.get()) == document.size();
    return std::fclose(file.release()) == 0 && written;
}

}  // namespace tolvane
