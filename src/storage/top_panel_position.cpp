#include "storage/top_panel_position.h"

#include "storage/json/json_reader.h"
#include "storage/json/json_writer.h"

#include <limits>
#include <utility>

namespace brevlin {

Expected<std::string, DocumentError> encode(const SavedPosition& position)
{
    JsonWriter writer;
    writer.beginObject();
    writer.field("displayID",
                 position.displayID ? std::optional<std::int64_t>{*position.displayID} : std::nullopt);
    writer.field("xFraction", position.xFraction);
    writer.field("yFraction", position.yFraction);
    writer.field("version", position.version);
    writer.field("horizontalAnchor", position.horizontalAnchor);
    writer.endObject();
    return std::move(writer).finish();
}

Expected<SavedPosition, DocumentError> decodeSavedPosition(const std::string& document)
{
    const auto json = JsonDocument::parse(document);
    if (!json) {
        return Unexpected{json.error()};
    }
    SavedPosition result;
    std::optional<std::int64_t> displayID;
    JsonObjectReader reader(json->root());
    reader.optional("displayID", displayID);
    if (displayID && (*displayID < 0 || *displayID > std::numeric_limits<std::uint32_t>::max())) {
        reader.refuse("displayID", "is out of range");
    } else if (displayID) {
        result.displayID = static_cast<std::uint32_t>(*displayID);
    }
    reader.required("xFraction", result.xFraction);
    reader.required("yFraction", result.yFraction);
    reader.optional("version", result.version);
    reader.optional("horizontalAnchor", result.horizontalAnchor);
    return reader.finish(result);
}

TopPanelPositionStore::TopPanelPositionStore(UserDefaults& defaults) : m_defaults(defaults) {}

std::optional<SavedPosition> TopPanelPositionStore::load()
{
    const std::string currentKey{key};
    auto document = m_defaults.value(currentKey);
    if (document && !*document) {
        document = m_defaults.value(std::string{legacyKey});
        // Should either step fail, the document stays where it was and the next start tries again.
        if (document && *document && m_defaults.setValue(currentKey, **document)) {
            [[maybe_unused]] const auto removed = m_defaults.remove(std::string{legacyKey});
        }
    }
    if (!document || !*document) {
        return std::nullopt;
    }
    const auto position = decodeSavedPosition(**document);
    return position ? std::optional{*position} : std::nullopt;
}

Expected<void, DocumentError> TopPanelPositionStore::save(const SavedPosition& position)
{
    const auto document = encode(position);
    if (!document) {
        return Unexpected{document.error()};
    }
    if (const auto written = m_defaults.setValue(std::string{key}, *document); !written) {
        return Unexpected{documentError(written.error())};
    }
    return {};
}

} // namespace brevlin
