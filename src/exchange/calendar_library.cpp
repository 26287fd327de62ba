#include "exchange/calendar_library.h"

#include <dlfcn.h>

#include <optional>

namespace brevlin {

namespace {

template <typename Function>
bool find(void* library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(::dlsym(library, name));
    return function != nullptr;
}

// It stays loaded: it holds zones and tables of its own until the process ends.
std::optional<CalendarLibrary> load()
{
    void* file = ::dlopen(CalendarLibrary::fileName, RTLD_NOW | RTLD_LOCAL);
    CalendarLibrary library;
    const bool isThere = file != nullptr && find(file, "icalcomponent_new", library.newComponent) &&
                         find(file, "icalcomponent_free", library.freeComponent) &&
                         find(file, "icalcomponent_add_property", library.addProperty) &&
                         find(file, "icalcomponent_as_ical_string_r", library.text) &&
                         find(file, "icalmemory_free_buffer", library.freeText) &&
                         find(file, "icaltime_from_timet_with_zone", library.time) &&
                         find(file, "icaltimezone_get_utc_timezone", library.utc) &&
                         find(file, "icalproperty_new_prodid", library.productIdentifier) &&
                         find(file, "icalproperty_new_version", library.version) &&
                         find(file, "icalproperty_new_uid", library.identifier) &&
                         find(file, "icalproperty_new_dtstamp", library.stamp) &&
                         find(file, "icalproperty_new_dtstart", library.start) &&
                         find(file, "icalproperty_new_dtend", library.end) &&
                         find(file, "icalproperty_new_summary", library.summary) &&
                         find(file, "icalproperty_new_transp", library.transparency) &&
                         find(file, "icalproperty_new_sequence", library.sequence);
    return isThere ? std::optional{library} : std::nullopt;
}

} // namespace

const CalendarLibrary* CalendarLibrary::open()
{
    static const std::optional<CalendarLibrary> library = load();
    return library ? &*library : nullptr;
}

} // namespace brevlin
