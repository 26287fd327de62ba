#include "storage/document_error.h"

namespace brevlin {

DocumentError documentError(const FileError& error)
{
    return {error.description + " (" + error.operation + ")", false};
}

} // namespace brevlin
