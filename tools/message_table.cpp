#include "tools/class_info.h"

#include "tools/all_classes.h"
#include "tools/class_row.h"

namespace
{

// A class has one row.
enum Place
{
#define MESSAGE(Envelope, Class) kPlaceOf##Class,
#define EITHER_WAY(Request, Reply, Class) kPlaceOf##Class,
#include "packs/messages.def"
#undef MESSAGE
#undef EITHER_WAY
};

#define MESSAGE(Envelope, Class) MESSAGE_ROW_HOLDS(Envelope, Class)
#define EITHER_WAY(Request, Reply, Class) MESSAGE(Request, Class) MESSAGE(Reply, Class)
#include "packs/messages.def"
#undef MESSAGE
#undef EITHER_WAY

} // namespace

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
