#include "storage/capsule_position.h"

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

CapsulePositionStore::CapsulePositionStore(const DocumentDisk& disk)
    : m_document(disk, std::string{key}, std::string{legacyKey})
{}

std::optional<SavedPosition> CapsulePositionStore::load()
{
    const auto document = m_document.read();
    if (!document || !*document) {
        return std::nullopt;
    }
    if (m_document.isUnderLegacyKey()) {
        m_document.write(**document);
    }
    const auto position = decodeSavedPosition(**document);
    return position ? std::optional{*position} : std::nullopt;
}

Expected<void, DocumentError> CapsulePositionStore::save(const SavedPosition& position)
{
    auto document = encode(position);
    if (!document) {
        return Unexpected{document.error()};
    }
    m_document.write(*std::move(document));
    return {};
}

} // namespace brevlin
