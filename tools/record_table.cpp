#include "tools/class_info.h"

#include "tools/all_classes.h"
#include "tools/class_row.h"

namespace
{

// A class has one row.
enum Place
{
#define RECORD(Class) kPlaceOf##Class,
#include "playerdata/records.def"
#undef RECORD
};

#define RECORD(Class) RECORD_ROW_HOLDS(Class)
#include "playerdata/records.def"
#undef RECORD

} // namespace

namespace tools
{

void addRecords(std::vector<ClassInfo>& table)
{
#define RECORD(Class) table.push_back(infoOf<Class>(#Class, Family::kRecord, ""));
#include "playerdata/records.def"
#undef RECORD
}

} // namespace tools
