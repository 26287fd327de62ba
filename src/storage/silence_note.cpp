#include "storage/silence_note.h"

#include "storage/json/json_reader.h"
#include "storage/json/json_writer.h"
#include "storage/stored_field.h"

#include <tuple>
#include <utility>

namespace brevlin {

namespace {

constexpr std::tuple fields{
    StoredField{"switch", &SilenceNote::switchName},
    StoredField{"wasSilent", &SilenceNote::wasSilent},
    StoredField{"isSilent", &SilenceNote::isSilent},
};

} // namespace

Expected<std::string, DocumentError> encode(const SilenceNote& note)
{
    JsonWriter writer;
    writer.beginObject();
    forEachField(fields, [&](const auto& field) { writer.field(field.name, field.of(note)); });
    writer.endObject();
    return std::move(writer).finish();
}

Expected<SilenceNote, DocumentError> decodeSilenceNote(const std::string& document)
{
    const auto json = JsonDocument::parse(document);
    if (!json) {
        return Unexpected{json.error()};
    }
    SilenceNote note;
    JsonObjectReader reader(json->root());
    forEachField(fields, [&](const auto& field) { reader.required(field.name, field.of(note)); });
    if (note.wasSilent || !note.isSilent) {
        reader.refuse("isSilent", "tells of nothing to give back");
    }
    return reader.finish(note);
}

void SilenceNoteStore::setObserver(Observer observer)
{
    m_document.setObserver(
        {[this, wasRead = std::move(observer.wasRead)](const std::optional<std::string>& document) {
             std::optional<SilenceNote> note;
             if (document) {
                 if (auto decoded = decodeSilenceNote(*document)) {
                     note = *std::move(decoded);
                 } else {
                     m_document.setDamaged();
                 }
             }
             wasRead(note);
         },
         {},
         std::move(observer.saved)});
}

Expected<void, DocumentError> SilenceNoteStore::write(const SilenceNote& note)
{
    auto document = encode(note);
    if (!document) {
        return Unexpected{document.error()};
    }
    m_document.write(*std::move(document));
    return {};
}

} // namespace brevlin
