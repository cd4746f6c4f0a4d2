#pragma once

/// @file
/// Everything that zorvel exports.
#include <zorvel/dirlock.h>
#include <zorvel/errors.h>
#include <zorvel/export.h>
#include <zorvel/fsutil.h>
#include <zorvel/ipc.h>
#include <zorvel/lockfile.h>
#include <zorvel/modules.h>
#include <zorvel/paths.h>
#include <zorvel/suite.h>
#include <zorvel/timer.h>
