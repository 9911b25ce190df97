#pragma once

#include <functional>
#include <string>
#include <vector>

#include "screens/facesearch/face_search_records.h"
#include "screens/facesearch/face_search_server.h"
#include "screens/facesearch/wake_descriptor.h"

/// What an operator types at standard input, a line at a time. One thread.
class FsvConsole {
 public:
    /// Whether somebody can type: standard input is a terminal and this program has it.
    static bool isThere();

    /// For poll(); -1 once the input has ended.
    int descriptor() const { return ended_ ? -1 : 0; }
    bool hasEnded() const { return ended_; }
    /// Takes what there is to read, which must be something; gives the lines that it finishes.
    std::vector<std::string> readLines();
    /// The number of the operator's next request, from 1 on.
    std::uint32_t nextRequest() { return ++requests_; }

 private:
    std::string begun_;
    bool ended_ = false;
    std::uint32_t requests_ = 0;
};

/// What the driver of the face search works with.
struct FsvSession {
    FaceSearchServer server;
    FsvConsole* console = nullptr;  // none: no requests
    /// Gets a copy of each answer that says who somebody is, in the receive thread. May be empty.
    std::function<void(const FaceInfoRecord& face)> recognised;
    WakeDescriptor* stop = nullptr;  // ends it, from any thread; none: only the operator does
    bool tellsFailure = true;        // whether a server that is not there is worth a line
};

enum class FsvEnd {
    Quit,  ///< the operator is done
    Stopped,
    NotConnected,
    Lost,  ///< the connection, after it was made
};

/// Connects, has answers told by ReceiveFunc(), and sends a request for the picture of each path
/// that the operator types, until that is "q". The input's end is as good, once the requests have
/// been answered or nothing has come for 10 seconds. Blocks.
FsvEnd fsv_start(const FsvSession& session);

/// The same, but a lost connection is made again, with 5 seconds between two tries. With
/// @p patient so is one that could not be made at first.
FsvEnd fsvKeepUp(FsvSession session, bool patient);
