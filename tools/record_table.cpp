#include "tools/class_info.h"

#include "tools/all_classes.h"

namespace tools
{

void addRecords(std::vector<ClassInfo>& table)
{
#define RECORD(Class) table.push_back(infoOf<Class>(#Class, Family::kRecord, ""));
#include "playerdata/records.def"
#undef RECORD
}

} // namespace tools
