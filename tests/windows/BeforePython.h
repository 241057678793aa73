#pragma once

// Python's configuration for Microsoft's compiler declares what MinGW's headers, which stand in for
// Microsoft's in a check, have declared otherwise.

#include <math.h>
#include <pthread.h>
#include <sys/types.h>

#define pid_t python_pid_t
