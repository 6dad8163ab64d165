#include <framework/Executable.h>

Executable::~Executable() = default;
