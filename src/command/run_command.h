#pragma once

namespace brevlin {

/// Brings the history out or in, as the arguments say, and gives the status to exit with.
int runCommand(int& argumentCount, char** arguments);

} // namespace brevlin
