#pragma once

namespace zorvel {
namespace platform {

/// The identifier of the calling process.
unsigned long processId();

}  // namespace platform
}  // namespace zorvel
