// An object's fields as JSON text, read from its memory by its schema: objectJson() for recordings, where a tree of
// values for each command would take most of the time.
#pragma once

#include "packaging/wire/schema.h"
#include "tools/json_text.h"

namespace tools
{

// Appends what objectJson() prints in one line. Any thread.
void addObject(JsonText& out, const wire::Schema& schema, const void* object);

} // namespace tools
