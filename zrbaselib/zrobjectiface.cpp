#include <zrbaselib/zrobjectiface.h>

ZRObjectIface::~ZRObjectIface() = default;
