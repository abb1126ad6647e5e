#include "examples/arena/page/role_page.h"

#include "arena/page_files.h"
#include "host/metrics.h"

namespace arena
{

void addRolePage(host::Service& service, const char* role)
{
    service.addPage("/", "text/html; charset=utf-8", page::html);
    service.addPage("/page.css", "text/css; charset=utf-8", page::css);
    service.addPage("/page.js", "text/javascript; charset=utf-8", page::js);
    service.addEvent("state",
                     [&service]() -> std::string {
                         return service.isDraining() ? "draining" : service.isReady() ? "ready" : "not ready";
                     });
    service.getMetrics().gauge("arena_role", "1 for the role of this process.", {{"role", role}}).set(1);
}

} // namespace arena
