#include "tools/class_info.h"

#include "tools/all_classes.h"

namespace tools
{

void addMessages(std::vector<ClassInfo>& table)
{
#define MESSAGE(Envelope, Class) table.push_back(infoOf<Class>(#Class, Family::kMessage, #Envelope));
#define EITHER_WAY(Request, Reply, Class)                                                                              \
    MESSAGE(Request, Class)                                                                                            \
    table.back().m_OtherEnvelope = #Reply;
#include "packs/messages.def"
#undef MESSAGE
#undef EITHER_WAY
}

} // namespace tools
