#pragma once

namespace zorvel {
namespace demo {

/// The picture's style sheet, for light and dark pages. Orange writes and blue
/// reads, which people who see few colours tell apart as well; everything else
/// differs in shape too.
extern const char timelineStyle[];

/// The stripes that the style sheet fills with.
extern const char timelineDefinitions[];

}  // namespace demo
}  // namespace zorvel
