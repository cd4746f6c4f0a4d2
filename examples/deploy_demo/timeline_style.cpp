#include "examples/deploy_demo/timeline_style.h"

namespace zorvel {
namespace demo {

const char timelineStyle[] =
    R"css(text { font-family: "Helvetica Neue", Helvetica, Arial, "Liberation Sans", sans-serif; font-size: 13px }
.title { font-size: 17px; font-weight: bold }
.small { font-size: 12px }
.moment { font-weight: bold }
.page { fill: #ffffff }
.title, .text, .kill.moment { fill: #1f2328 }
.small { fill: #57606a }
.axis, .tick { stroke: #8c959f; stroke-width: 1 }
.lane { stroke: #d0d7de; stroke-width: 1 }
.waiting { fill: #8b949e }
.writing { fill: #d55e00 }
.reading { fill: #0a5fc2 }
.unfinished { fill: #ffffff; stroke: #0a5fc2; stroke-width: 2 }
.torn { fill: #b5007d }
.dead-writer { fill: url(#writer-stripes); stroke: #d55e00; stroke-width: 1 }
.dead-reader { fill: url(#reader-stripes); stroke: #0a5fc2; stroke-width: 1 }
.writer-stripe { stroke: #d55e00; stroke-width: 3 }
.reader-stripe { stroke: #0a5fc2; stroke-width: 3 }
.line { stroke-width: 1.5; stroke-dasharray: 4 3 }
.kill.line, .cross { stroke: #1f2328 }
.cross { stroke-width: 3.5; fill: none }
.halo { stroke: #ffffff; stroke-width: 7.5; fill: none }
.heir.line { stroke: #17752f }
.heir.moment, .wedge { fill: #17752f }
.wedge { stroke: #ffffff; stroke-width: 1.5 }
.diamond { fill: #ffffff; stroke: #1f2328; stroke-width: 1.5 }
.cut { fill: #eaeef2 }
.edge { stroke: #8c959f; stroke-width: 1.5; fill: none }
@media (prefers-color-scheme: dark) {
.page { fill: #0d1117 }
.title, .text, .kill.moment { fill: #e6edf3 }
.small { fill: #a3adb8 }
.axis, .tick { stroke: #7d8590 }
.lane { stroke: #363d47 }
.waiting { fill: #7d8590 }
.writing { fill: #ff9a3c }
.reading { fill: #58a6ff }
.unfinished { fill: #0d1117; stroke: #58a6ff }
.torn { fill: #ff7ad9 }
.dead-writer { stroke: #ff9a3c }
.dead-reader { stroke: #58a6ff }
.writer-stripe { stroke: #ff9a3c }
.reader-stripe { stroke: #58a6ff }
.kill.line, .cross { stroke: #e6edf3 }
.halo { stroke: #0d1117 }
.heir.line { stroke: #56d364 }
.heir.moment, .wedge { fill: #56d364 }
.wedge { stroke: #0d1117 }
.diamond { fill: #0d1117; stroke: #e6edf3 }
.cut { fill: #21262d }
.edge { stroke: #7d8590 }
}
)css";

const char timelineDefinitions[] =
    R"xml(<pattern id="writer-stripes" width="8" height="8" patternUnits="userSpaceOnUse" patternTransform="rotate(45)">
<line class="writer-stripe" x1="2" y1="0" x2="2" y2="8"/>
</pattern>
<pattern id="reader-stripes" width="8" height="8" patternUnits="userSpaceOnUse" patternTransform="rotate(45)">
<line class="reader-stripe" x1="2" y1="0" x2="2" y2="8"/>
</pattern>
)xml";

}  // namespace demo
}  // namespace zorvel
