#pragma once
// What a tool routine, a dialog or an effect may use besides the document: the draw
// state (colours, the tool's options) and the main window as host.

namespace velunta {

struct DrawState;
class ToolHost;

struct ToolContext {
    DrawState& state;
    ToolHost& host;
};

} // namespace velunta
