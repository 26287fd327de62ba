#pragma once

namespace brevlin {

/// Asks the running program for what the arguments say, and gives the status to exit with.
int runVerb(int argumentCount, char** arguments);

} // namespace brevlin
