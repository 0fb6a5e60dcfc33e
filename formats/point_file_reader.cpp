#include "formats/point_file_reader.h"

#include <libxml/entities.h>
#include <libxml/xmlreader.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/base/csv_text.h"

namespace tolvane {
namespace {

constexpr int kElementNode = XML_READER_TYPE_ELEMENT;
constexpr int kEndElementNode = XML_READER_TYPE_END_ELEMENT;

std::string_view View(const xmlChar* text) {
    return text == nullptr ? std::string_view() : reinterpret_cast<const char*>(text);
}

constexpr std::string_view kBlanks = " \t\r\n";

std::string TrimmedText(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(kBlanks) - first + 1));
}

// The most text the entities of one reference may give, and how deep they
// may name one another: a name or a description is far shorter.
constexpr std::size_t kMostEntityText = 64 * 1024;
constexpr int kDeepestEntity = 40;

std::string EntityName(const xmlChar* name) {
    return "Entity '" + std::string(View(name)) + "'";
}

std::string AppendEntityText(xmlDocPtr document, const xmlChar* name, int depth, std::size_t limit,
                             std::string& text);

// Appends the text of nodes an entity holds, with that of the entities they
// name; empty when done, else why the text cannot be had.
std::string AppendNodesText(xmlDocPtr document, xmlNodePtr node, int depth, std::size_t limit,
                            std::string& text) {
    for (; node != nullptr; node = node->next) {
        std::string reason;
        if (node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE) {
            text += View(node->content);
        } else if (node->type == XML_ENTITY_REF_NODE) {
            reason = AppendEntityText(document, node->name, depth + 1, limit, text);
        } else if (node->type == XML_ELEMENT_NODE) {
            reason = AppendNodesText(document, node->children, depth + 1, limit, text);
        }
        if (!reason.empty()) return reason;
        if (text.size() > limit) {
            return "Entities give more than " + std::to_string(kMostEntityText) + " bytes of text";
        }
    }
    return {};
}

// Appends the text of the entity called name, as the document declares
// it. Only the document's own entities are read: an external one would
// reach outside the file and is refused, as is one that is not declared.
std::string AppendEntityText(xmlDocPtr document, const xmlChar* name, int depth, std::size_t limit,
                             std::string& text) {
    const xmlEntityPtr entity = xmlGetDocEntity(document, name);
    if (entity == nullptr) return EntityName(name) + " is not declared";
    if (entity->etype == XML_INTERNAL_PREDEFINED_ENTITY) {
        text += View(entity->content);
        return {};
    }
    if (entity->etype != XML_INTERNAL_GENERAL_ENTITY) {
        return EntityName(name) + " is external and is not read";
    }
    if (depth > kDeepestEntity) return EntityName(name) + " is nested too deep";
    // libxml2 parses an entity's text at its first reference; one it could
    // not parse would otherwise give no text at all.
    if (entity->children == nullptr && !View(entity->content).empty()) {
        return EntityName(name) + " cannot be read";
    }
    return AppendNodesText(document, entity->children, depth, limit, text);
}

// libxml2's pull reader over a file read whole, with its first error kept
// instead of printed. Nothing is fetched from the network and no external
// entity is read, so a hostile file can't reach out; the document's own
// entities are expanded within the bounds above and within libxml2's own
// limits on how much entities may amplify a document, so a file can't blow
// up either. libxml2 refuses elements nested deeper than 256, which also
// bounds the recursion of the walk below.
class XmlReader {
  public:
    explicit XmlReader(const std::string& path) {
        std::error_code error;
        const std::uintmax_t size = std::filesystem::file_size(path, error);
        if (error || !std::ifstream(path, std::ios::binary)) return;
        opened_ = true;
        if (size == 0) {
            // libxml2 makes no reader for an empty file.
            errorText_ = "Document is empty";
            return;
        }
        fileBytes_ = static_cast<double>(size);
        // The file is read as the walk goes, a piece at a time, never whole.
        reader_.reset(xmlReaderForFile(path.c_str(), nullptr, XML_PARSE_NONET));
        if (reader_) {
            xmlTextReaderSetStructuredErrorHandler(reader_.get(), KeepError, this);
        } else {
            errorText_ = "Document cannot be read";
        }
    }

    bool Opened() const { return opened_; }

    // Moves to the next node; false at the end of the document or where it
    // breaks (then Broken() is true).
    bool Read() {
        if (!reader_ || broken_ || stoppedFor_ != ImportProblem::kNone) return false;
        if (++nodes_ % kNodesPerProgress == 0 && progress_ && !progress_(Share())) {
            Stop(ImportProblem::kCancelled);
            return false;
        }
        const int result = xmlTextReaderRead(reader_.get());
        if (result < 0) broken_ = true;
        return result == 1;
    }

    // Ends the read for a reason of the program's own: the next Read gives
    // false, and the document counts as broken off.
    void Stop(ImportProblem reason) { stoppedFor_ = reason; }
    ImportProblem StoppedFor() const { return stoppedFor_; }
    void SetProgress(const ImportProgress& progress) { progress_ = progress; }

    bool Broken() const { return broken_ || !reader_ || stoppedFor_ != ImportProblem::kNone; }
    int ErrorLine() const { return errorLine_; }
    const std::string& ErrorText() const { return errorText_; }

    int Type() { return xmlTextReaderNodeType(reader_.get()); }
    int Depth() { return xmlTextReaderDepth(reader_.get()); }
    bool IsEmpty() { return xmlTextReaderIsEmptyElement(reader_.get()) == 1; }
    std::string_view LocalName() { return View(xmlTextReaderConstLocalName(reader_.get())); }
    std::string_view Namespace() { return View(xmlTextReaderConstNamespaceUri(reader_.get())); }
    int Line() {
        const xmlNodePtr node = xmlTextReaderCurrentNode(reader_.get());
        return node == nullptr ? 0 : static_cast<int>(xmlGetLineNo(node));
    }

    std::optional<std::string> Attribute(const char* name) {
        xmlChar* value =
            xmlTextReaderGetAttribute(reader_.get(), reinterpret_cast<const xmlChar*>(name));
        if (value == nullptr) return std::nullopt;
        std::string text(View(value));
        xmlFree(value);
        return text;
    }

    // The text the node holds, for text and CDATA nodes.
    std::string_view Value() { return View(xmlTextReaderConstValue(reader_.get())); }

    // Appends the text of the entity reference the reader is on. An entity
    // whose text cannot be had breaks the document off there, with the
    // reason, so that no text is lost without a word.
    bool AppendEntity(std::string& text) {
        const xmlNodePtr node = xmlTextReaderCurrentNode(reader_.get());
        const std::string reason =
            node == nullptr
                ? "Entity reference without a node"
                : AppendEntityText(node->doc, node->name, 0, text.size() + kMostEntityText, text);
        if (reason.empty()) return true;
        broken_ = true;
        if (errorText_.empty()) {
            errorLine_ = Line();
            errorText_ = reason;
        }
        return false;
    }

  private:
    static void KeepError(void* self, xmlErrorPtr error) {
        auto* reader = static_cast<XmlReader*>(self);
        if (error == nullptr || error->level < XML_ERR_ERROR || !reader->errorText_.empty()) {
            return;
        }
        reader->errorLine_ = error->line;
        reader->errorText_ = TrimmedText(error->message == nullptr ? "" : error->message);
    }

    struct Closer {
        void operator()(xmlTextReaderPtr reader) const { xmlFreeTextReader(reader); }
    };

    // How many nodes pass between two reports of progress.
    static constexpr long kNodesPerProgress = 4096;

    double Share() const {
        return std::min(1.0,
                        static_cast<double>(xmlTextReaderByteConsumed(reader_.get())) / fileBytes_);
    }

    double fileBytes_ = 1;
    long nodes_ = 0;
    ImportProgress progress_;
    ImportProblem stoppedFor_ = ImportProblem::kNone;
    bool opened_ = false;
    bool broken_ = false;
    std::unique_ptr<xmlTextReader, Closer> reader_;
    int errorLine_ = 0;
    std::string errorText_;
};

// The walk over one document: its root's namespace is the one whose
// elements count; elements of any other namespace are extensions.
class DocumentWalk {
  public:
    explicit DocumentWalk(XmlReader& reader) : reader_(reader) {}

    // Moves to the root element; false when there is none to read.
    bool ToRoot() {
        while (reader_.Read()) {
            if (reader_.Type() == kElementNode) {
                namespace_ = reader_.Namespace();
                return true;
            }
        }
        return false;
    }

    XmlReader& Reader() { return reader_; }

    // Calls onChild with the local name of each child element of the element
    // the reader is on, in the document's namespace; onChild leaves the
    // reader on that child's end (ReadText, SkipElement and ForEachChild all
    // do). Children of other namespaces are skipped whole. False when the
    // document breaks off inside.
    bool ForEachChild(const std::function<bool(std::string_view)>& onChild) {
        if (reader_.IsEmpty()) return true;
        const int depth = reader_.Depth();
        while (reader_.Read()) {
            const int type = reader_.Type();
            if (type == kEndElementNode && reader_.Depth() == depth) return true;
            if (type != kElementNode) continue;
            const bool ours = reader_.Namespace() == namespace_;
            if (!(ours ? onChild(reader_.LocalName()) : SkipElement())) return false;
        }
        return false;
    }

    bool SkipElement() {
        return ForEachChild([this](std::string_view) { return SkipElement(); });
    }

    // The text of the element the reader is on, its descendants' included,
    // without the blanks around it.
    bool ReadText(std::string& text) {
        std::string gathered;
        if (!reader_.IsEmpty()) {
            const int depth = reader_.Depth();
            bool ended = false;
            while (!ended && reader_.Read()) {
                const int type = reader_.Type();
                if (type == XML_READER_TYPE_TEXT || type == XML_READER_TYPE_CDATA) {
                    gathered += reader_.Value();
                } else if (type == XML_READER_TYPE_ENTITY_REFERENCE &&
                           !reader_.AppendEntity(gathered)) {
                    return false;
                }
                ended = type == kEndElementNode && reader_.Depth() == depth;
            }
            if (!ended) return false;
        }
        text = TrimmedText(gathered);
        return true;
    }

    // The texts of the descendant elements named in texts, wherever they
    // are nested (a KML placemark's coordinates, description and time).
    bool ReadNestedTexts(std::map<std::string, std::string, std::less<>>& texts) {
        return ForEachChild([&](std::string_view name) {
            const auto found = texts.find(name);
            if (found == texts.end()) return ReadNestedTexts(texts);
            std::string text;
            if (!ReadText(text)) return false;
            found->second += found->second.empty() ? text : " " + text;
            return true;
        });
    }

  private:
    XmlReader& reader_;
    std::string namespace_;
};

// Everything one read gathers, and the first problem it met.
class ReadState {
  public:
    explicit ReadState(XmlReader& reader) : reader_(reader) {}

    ImportRead result;

    void PointSkipped(int line) {
        ++result.pointsSkipped;
        Problem(ImportProblem::kBadPoint, line, {});
    }

    void Problem(ImportProblem problem, int line, std::string detail) {
        if (result.problem != ImportProblem::kNone) return;
        result.problem = problem;
        result.problemLine = line;
        result.problemDetail = std::move(detail);
    }

    // Counts a point that is kept; past the most a file may give, the read
    // stops. False then.
    bool KeepPoint() {
        if (++pointsKept_ <= kMostImportPoints) return true;
        reader_.Stop(ImportProblem::kTooManyPoints);
        return false;
    }

    // Marks a broken document, where the reader stopped.
    void Broken(const XmlReader& reader) {
        if (!reader.Opened()) {
            result.problem = ImportProblem::kNotOpened;
            return;
        }
        if (reader.StoppedFor() != ImportProblem::kNone) {
            result.problem = reader.StoppedFor();
            return;
        }
        // A broken document is the problem to report, ahead of a bad point
        // before the break.
        result.problem = ImportProblem::kNone;
        Problem(ImportProblem::kBroken, reader.ErrorLine(), reader.ErrorText());
    }

  private:
    XmlReader& reader_;
    int pointsKept_ = 0;
};

std::optional<double> Coordinate(const std::optional<std::string>& text, double limit) {
    if (!text) return std::nullopt;
    const std::optional<double> value = ParseNumber(*text);
    if (!value || *value < -limit || *value > limit) return std::nullopt;
    return value;
}

// A wpt, rtept or trkpt; false when the document breaks off inside it.
// A point without a readable position is counted and not passed on.
bool ReadGpxPoint(DocumentWalk& walk, ReadState& state,
                  const std::function<void(const ImportPoint&)>& keep) {
    XmlReader& reader = walk.Reader();
    const int line = reader.Line();
    const std::optional<double> latitude = Coordinate(reader.Attribute("lat"), 90);
    const std::optional<double> longitude = Coordinate(reader.Attribute("lon"), 180);
    ImportPoint point;
    const std::map<std::string_view, std::string*> texts = {{"name", &point.name},
                                                            {"desc", &point.description},
                                                            {"cmt", &point.comment},
                                                            {"sym", &point.symbol},
                                                            {"time", &point.time}};
    const bool whole = walk.ForEachChild([&](std::string_view name) {
        const auto found = texts.find(name);
        return found == texts.end() ? walk.SkipElement() : walk.ReadText(*found->second);
    });
    if (!whole) return false;
    if (!latitude || !longitude) {
        state.PointSkipped(line);
        return true;
    }
    point.latitude = *latitude;
    point.longitude = *longitude;
    if (!state.KeepPoint()) return false;
    keep(point);
    return true;
}

// The name and the points of a rte or trkseg-holding trk: pointElement is
// "rtept" for a route; a track's points sit in its "trkseg" children.
template <typename List>
bool ReadGpxList(DocumentWalk& walk, ReadState& state, List& list, std::string_view pointElement,
                 const std::function<void(List&, const ImportPoint&)>& add) {
    const auto keep = [&](const ImportPoint& point) { add(list, point); };
    return walk.ForEachChild([&](std::string_view name) {
        if (name == "name") return walk.ReadText(list.name);
        if (name == pointElement) return ReadGpxPoint(walk, state, keep);
        if (name == "trkseg") {
            return walk.ForEachChild([&](std::string_view child) {
                return child == "trkpt" ? ReadGpxPoint(walk, state, keep) : walk.SkipElement();
            });
        }
        return walk.SkipElement();
    });
}

bool ReadGpxDocument(DocumentWalk& walk, ReadState& state) {
    ImportContents& contents = state.result.contents;
    return walk.ForEachChild([&](std::string_view name) {
        if (name == "wpt") {
            return ReadGpxPoint(walk, state, [&](const ImportPoint& point) {
                contents.waypoints.push_back(point);
            });
        }
        if (name == "rte") {
            ImportRoute& route = contents.routes.emplace_back();
            return ReadGpxList<ImportRoute>(
                walk, state, route, "rtept",
                [](ImportRoute& list, const ImportPoint& point) { list.points.push_back(point); });
        }
        if (name == "trk") {
            ImportTrack& track = contents.tracks.emplace_back();
            return ReadGpxList<ImportTrack>(walk, state, track, "trkpt",
                                            [](ImportTrack& list, const ImportPoint& point) {
                                                list.points.push_back(ToTrackPoint(point));
                                            });
        }
        return walk.SkipElement();
    });
}

// The coordinate tuples of a KML coordinates text, "lon,lat[,alt]" each,
// apart by blanks. Blanks beside a comma are part of a tuple: this program
// writes "lon, lat, alt".
std::vector<std::string> CoordinateTuples(std::string_view text) {
    std::vector<std::string> tuples;
    std::string tuple;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (kBlanks.find(text[i]) == std::string_view::npos) {
            tuple += text[i];
            continue;
        }
        const std::size_t next = text.find_first_not_of(kBlanks, i);
        const bool besideComma = (!tuple.empty() && tuple.back() == ',') ||
                                 (next != std::string_view::npos && text[next] == ',');
        if (!besideComma && !tuple.empty()) tuples.push_back(std::move(tuple));
        if (!besideComma) tuple.clear();
    }
    if (!tuple.empty()) tuples.push_back(std::move(tuple));
    return tuples;
}

// The time cell of the description table this program writes.
std::string DescriptionTime(std::string_view description) {
    constexpr std::string_view kTimeCell = "<b>Time</b></td><td>";
    const std::size_t start = description.find(kTimeCell);
    if (start == std::string_view::npos) return {};
    const std::string_view rest = description.substr(start + kTimeCell.size());
    return std::string(rest.substr(0, rest.find('<')));
}

using KmlTexts = std::map<std::string, std::string, std::less<>>;

// The points of one placemark, a point or a line, with the placemark's time.
void AddKmlPoints(ReadState& state, int line, KmlTexts& texts) {
    ImportTrack& track = state.result.contents.tracks.front();
    ImportPoint point;
    point.time = texts["when"].empty() ? DescriptionTime(texts["description"]) : texts["when"];
    for (const std::string& tuple : CoordinateTuples(texts["coordinates"])) {
        const std::vector<std::string_view> values = SplitColumns(tuple, 3);
        const std::optional<double> longitude = Coordinate(std::string(values[0]), 180);
        const std::optional<double> latitude =
            values.size() > 1 ? Coordinate(std::string(values[1]), 90) : std::nullopt;
        if (!longitude || !latitude) {
            state.PointSkipped(line);
            continue;
        }
        point.longitude = *longitude;
        point.latitude = *latitude;
        if (!state.KeepPoint()) return;
        track.points.push_back(ToTrackPoint(point));
    }
}

// Placemarks anywhere in the documents and folders of a KML file.
bool ReadKmlContainer(DocumentWalk& walk, ReadState& state) {
    return walk.ForEachChild([&](std::string_view name) {
        if (name == "Document" || name == "Folder") return ReadKmlContainer(walk, state);
        if (name != "Placemark") return walk.SkipElement();
        const int line = walk.Reader().Line();
        KmlTexts texts = {{"coordinates", ""}, {"description", ""}, {"when", ""}};
        if (!walk.ReadNestedTexts(texts)) return false;
        AddKmlPoints(state, line, texts);
        return true;
    });
}

// Reads an XML document whose root is one of the kinds asked for; any other
// root is a foreign file.
ImportRead ReadXmlDocument(const std::string& path, bool gpxOnly, const ImportProgress& progress) {
    XmlReader reader(path);
    reader.SetProgress(progress);
    ReadState state(reader);
    DocumentWalk walk(reader);
    if (!walk.ToRoot()) {
        state.Broken(reader);
        return state.result;
    }
    const std::string root(reader.LocalName());
    bool whole = false;
    if (root == "gpx") {
        whole = ReadGpxDocument(walk, state);
    } else if (root == "kml" && !gpxOnly) {
        state.result.contents.tracks.emplace_back();
        whole = ReadKmlContainer(walk, state);
    } else {
        state.Problem(ImportProblem::kForeign, reader.Line(), root);
        return state.result;
    }
    if (!whole) state.Broken(reader);
    return state.result;
}

// Whether the file's first character that is not a blank (after a UTF-8
// byte order mark) opens an XML document.
bool StartsLikeXml(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::string start(256, '\0');
    in.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(in.gcount()));
    if (start.rfind("\xEF\xBB\xBF", 0) == 0) start.erase(0, 3);
    const std::size_t first = start.find_first_not_of(" \t\r\n");
    return first != std::string::npos && start[first] == '<';
}

}  // namespace

ImportRead ReadGpxFile(const std::string& path, const ImportProgress& progress) {
    return ReadXmlDocument(path, true, progress);
}

ImportRead ReadTrackFile(const std::string& path, const ImportProgress& progress) {
    if (StartsLikeXml(path)) {
        ImportRead read = ReadXmlDocument(path, false, progress);
        // A GPX file's waypoints and routes are not part of a track.
        read.contents.waypoints.clear();
        read.contents.routes.clear();
        return read;
    }
    return ReadTrackLog(path, progress);
}

}  // namespace tolvane
