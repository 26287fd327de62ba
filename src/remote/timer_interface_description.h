#pragma once

namespace brevlin {

/// The XML of com.quillmark.Brevlin.Timer1, as it is installed.
extern const char* const timerInterfaceDescription;

} // namespace brevlin
