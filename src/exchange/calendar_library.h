#pragma once

#include <libical/ical.h>

#include <memory>

namespace brevlin {

/// The functions of libical that the export of a calendar needs. The library is opened when the first one is
/// made and not before: nobody else pays for it.
struct CalendarLibrary
{
    static constexpr const char* fileName = "libical.so.3";

    decltype(&::icalcomponent_new) newComponent = nullptr;
    decltype(&::icalcomponent_free) freeComponent = nullptr;
    decltype(&::icalcomponent_add_property) addProperty = nullptr;
    decltype(&::icalcomponent_as_ical_string_r) text = nullptr;
    decltype(&::icalmemory_free_buffer) freeText = nullptr;
    decltype(&::icaltime_from_timet_with_zone) time = nullptr;
    decltype(&::icaltimezone_get_utc_timezone) utc = nullptr;
    decltype(&::icalproperty_new_prodid) productIdentifier = nullptr;
    decltype(&::icalproperty_new_version) version = nullptr;
    decltype(&::icalproperty_new_uid) identifier = nullptr;
    decltype(&::icalproperty_new_dtstamp) stamp = nullptr;
    decltype(&::icalproperty_new_dtstart) start = nullptr;
    decltype(&::icalproperty_new_dtend) end = nullptr;
    decltype(&::icalproperty_new_summary) summary = nullptr;
    decltype(&::icalproperty_new_transp) transparency = nullptr;
    decltype(&::icalproperty_new_sequence) sequence = nullptr;

    /// Null where the library, or a function of it, is not there.
    static const CalendarLibrary* open();
};

} // namespace brevlin
