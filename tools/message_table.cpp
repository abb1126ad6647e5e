#include "tools/class_info.h"

#include "tools/all_classes.h"

namespace tools
{

void addMessages(std::vector<ClassInfo>& table)
{
#define MESSAGE(Envelope, Class) table.push_back(infoOf<Class>(#Class, Family::kMessage, #Envelope));
#include "packs/messages.def"
#undef MESSAGE
}

} // namespace tools
