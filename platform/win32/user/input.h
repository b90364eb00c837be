// From what the screen reports to messages.
#pragma once

#include "platform/win32/user/message_queue.h"

namespace win32 {

// Takes what the screen has to tell and gives it to the queues of the windows that it is about. From any thread.
void drain_screen();

// What the screen answers. Reading an answer may bring events in that the thread which watches the screen does not see
// coming; a thread that owns no surface hands them out itself.
Pointer ask_pointer();
std::vector<Monitor> ask_monitors(); // the primary one first; never empty

// After the display went away: every thread with windows has got WM_QUIT, and nothing comes from the screen any more.
bool display_is_lost();

struct Taken {
    std::optional<MSG> message;
    bool progress = false; // handlers ran; look from the start again
};

// The first input message that the filter admits. Working it out asks windows where they were hit, activates them and
// sets the cursor.
Taken take_input(MessageQueue& queue, const MessageFilter& filter, UINT remove);

} // namespace win32
