#include "core/nav/destination_list.h"

#include <algorithm>

#include "core/base/string_manager.h"
#include "core/data/geo_point_file.h"

namespace tolvane {
namespace {

using Guard = std::lock_guard<std::mutex>;

constexpr std::uint32_t kTextReached = 14243;
constexpr std::uint32_t kTextCurrent = 14244;

int Count(const DestinationDraft& draft) {
    return static_cast<int>(draft.points.size());
}

int FirstUnreached(const std::vector<GeoPoint>& points) {
    for (int index = 0; index < static_cast<int>(points.size()); ++index) {
        if (points[index].reached == 0) return index;
    }
    return kNoDestination;
}

// The end of the run of reached destinations at the head of the list.
int LastReachedInOrder(const std::vector<GeoPoint>& points) {
    const int firstUnreached = FirstUnreached(points);
    return firstUnreached == kNoDestination ? static_cast<int>(points.size()) - 1
                                            : firstUnreached - 1;
}

void ReplaceList(Navigation& navigation, const DestinationDraft& draft) {
    DynamicList<GeoPoint>& list = navigation.destinations;
    list.Clear();
    for (const GeoPoint& point : draft.points) list.Append(point);
    const bool currentValid = draft.current >= 0 && draft.current < Count(draft);
    navigation.current = currentValid ? draft.current : FirstUnreached(draft.points);
    navigation.previous = LastReachedInOrder(draft.points);
    navigation.open = true;
}

}  // namespace

std::string DestinationRowText(const DestinationDraft& draft, int index) {
    const GeoPoint& point = draft.points[static_cast<std::size_t>(index)];
    std::string text = std::to_string(index + 1) + ". " + point.name;
    if (index == draft.current) text += "  [" + LanguageText(kTextCurrent) + "]";
    if (point.reached != 0) text += "  (" + LanguageText(kTextReached) + ")";
    return text;
}

DestinationDraft CopyDestinations(Navigation& navigation) {
    const Guard guard(navigation.lock);
    DestinationDraft draft;
    navigation.destinations.ForEach([&](const GeoPoint& point) { draft.points.push_back(point); });
    draft.current = navigation.current;
    return draft;
}

void ApplyDestinations(Navigation& navigation, const DestinationDraft& draft) {
    const Guard guard(navigation.lock);
    ReplaceList(navigation, draft);
    if (draft.edited) navigation.unsavedChanges = true;
}

void MoveDestination(DestinationDraft& draft, int index, int step) {
    const int other = index + step;
    if (index < 0 || index >= Count(draft) || other < 0 || other >= Count(draft)) return;
    std::swap(draft.points[index], draft.points[other]);
    draft.edited = true;
    if (draft.current == index) {
        draft.current = other;
    } else if (draft.current == other) {
        draft.current = index;
    }
}

void InsertDestination(DestinationDraft& draft, int index, const GeoPoint& point) {
    index = std::clamp(index, 0, Count(draft));
    draft.points.insert(draft.points.begin() + index, point);
    draft.edited = true;
    if (draft.current >= index) ++draft.current;
    if (draft.current == kNoDestination) draft.current = FirstUnreached(draft.points);
}

void RemoveDestination(DestinationDraft& draft, int index) {
    if (index < 0 || index >= Count(draft)) return;
    draft.points.erase(draft.points.begin() + index);
    draft.edited = true;
    if (draft.current == index) {
        draft.current = FirstUnreached(draft.points);
    } else if (draft.current > index) {
        --draft.current;
    }
}

void ReplaceDestination(DestinationDraft& draft, int index, const GeoPoint& point) {
    if (index < 0 || index >= Count(draft)) return;
    draft.points[index] = point;
    draft.edited = true;
}

void SelectDestination(Navigation& navigation, int index) {
    DestinationDraft draft = CopyDestinations(navigation);
    if (index < 0 || index >= Count(draft)) return;
    draft.points[index].reached = 0;
    draft.current = index;
    ApplyDestinations(navigation, draft);
}

void GoToPoint(Navigation& navigation, const GeoPoint& point) {
    DestinationDraft draft;
    draft.points.push_back(point);
    draft.points.back().reached = 0;
    draft.current = 0;
    const Guard guard(navigation.lock);
    ReplaceList(navigation, draft);
    navigation.file.clear();
    navigation.unsavedChanges = false;
}

void NewDestinationList(Navigation& navigation, const std::string& path) {
    const Guard guard(navigation.lock);
    ReplaceList(navigation, DestinationDraft{});
    navigation.file = path;
    navigation.unsavedChanges = false;
}

CsvReadResult OpenDestinationFile(Navigation& navigation, const std::string& path) {
    DynamicList<GeoPoint> loaded;
    const CsvReadResult read = LoadPointFile(path, loaded);
    if (!read.opened) return read;
    OpenDestinationList(navigation, loaded);
    const Guard guard(navigation.lock);
    navigation.file = path;
    return read;
}

bool SaveDestinationList(Navigation& navigation, const std::string& path) {
    const Guard guard(navigation.lock);
    if (!SavePointFile(path, navigation.destinations)) return false;
    navigation.file = path;
    navigation.unsavedChanges = false;
    return true;
}

}  // namespace tolvane
