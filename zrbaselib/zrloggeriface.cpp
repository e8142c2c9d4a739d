#include <zrbaselib/zrloggeriface.h>

ZRLoggerIface::~ZRLoggerIface() = default;
