#include "storage/main_window_store.h"

#include "storage/json/json_reader.h"
#include "storage/json/json_writer.h"

#include <cstdint>
#include <utility>

namespace brevlin {

namespace {

std::optional<JsonDocument> load(KeptDocument& kept)
{
    const auto document = kept.read();
    if (!document || !*document) {
        return std::nullopt;
    }
    auto json = JsonDocument::parse(**document);
    return json ? std::optional{*std::move(json)} : std::nullopt;
}

Expected<void, DocumentError> save(KeptDocument& kept, JsonWriter writer)
{
    auto document = std::move(writer).finish();
    if (!document) {
        return Unexpected{document.error()};
    }
    kept.write(*std::move(document));
    return {};
}

std::optional<std::string> loadText(KeptDocument& kept)
{
    const auto json = load(kept);
    std::string result;
    return json && read(json->root(), result) ? std::optional{result} : std::nullopt;
}

Expected<void, DocumentError> saveText(KeptDocument& kept, std::string_view text)
{
    JsonWriter writer;
    writer.value(text);
    return save(kept, std::move(writer));
}

constexpr std::string_view dark = "dark";
constexpr std::string_view light = "light";

// Beyond these limits lies no screen.
constexpr std::int64_t furthest = 100'000;

int checkedPoints(JsonObjectReader& reader, std::string_view key, std::int64_t value, std::int64_t least)
{
    if (value < least || value > furthest) {
        reader.refuse(key, "is out of range");
        return 0;
    }
    return static_cast<int>(value);
}

int readLength(JsonObjectReader& reader, std::string_view key)
{
    std::int64_t value = 0;
    reader.required(key, value);
    return checkedPoints(reader, key, value, 1);
}

std::optional<WindowPlace> readPlace(JsonObjectReader& reader)
{
    std::optional<std::int64_t> x;
    std::optional<std::int64_t> y;
    reader.optional("x", x);
    reader.optional("y", y);
    if (!x || !y) {
        return std::nullopt;
    }
    return WindowPlace{checkedPoints(reader, "x", *x, -furthest), checkedPoints(reader, "y", *y, -furthest)};
}

} // namespace

MainWindowStore::MainWindowStore(const DocumentDisk& disk)
    : m_section(disk, std::string(sectionKey))
    , m_geometry(disk, std::string(geometryKey))
    , m_colorScheme(disk, std::string(colorSchemeKey))
{}

std::optional<std::string> MainWindowStore::section()
{
    return loadText(m_section);
}

Expected<void, DocumentError> MainWindowStore::saveSection(std::string_view rawValue)
{
    return saveText(m_section, rawValue);
}

std::optional<bool> MainWindowStore::wasDark()
{
    const auto scheme = loadText(m_colorScheme);
    return scheme == dark || scheme == light ? std::optional{scheme == dark} : std::nullopt;
}

Expected<void, DocumentError> MainWindowStore::saveIsDark(bool isDark)
{
    return saveText(m_colorScheme, isDark ? dark : light);
}

std::optional<WindowGeometry> MainWindowStore::geometry()
{
    const auto json = load(m_geometry);
    if (!json) {
        return std::nullopt;
    }
    WindowGeometry result;
    JsonObjectReader reader(json->root());
    result.place = readPlace(reader);
    result.width = readLength(reader, "width");
    result.height = readLength(reader, "height");
    reader.required("maximized", result.maximized);
    return reader.error() ? std::nullopt : std::optional{result};
}

Expected<void, DocumentError> MainWindowStore::saveGeometry(const WindowGeometry& geometry)
{
    JsonWriter writer;
    writer.beginObject();
    if (geometry.place) {
        writer.field("x", std::int64_t{geometry.place->x});
        writer.field("y", std::int64_t{geometry.place->y});
    }
    writer.field("width", std::int64_t{geometry.width});
    writer.field("height", std::int64_t{geometry.height});
    writer.field("maximized", geometry.maximized);
    writer.endObject();
    return save(m_geometry, std::move(writer));
}

} // namespace brevlin
