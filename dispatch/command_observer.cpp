#include "dispatch/command_observer.h"

CommandObserver::~CommandObserver() = default;
