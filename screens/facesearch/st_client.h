#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "screens/facesearch/cipher_hooks.h"
#include "screens/facesearch/face_search_records.h"
#include "screens/facesearch/wake_descriptor.h"

/// A connection to a face-search server: blocking requests, and one thread that receives.
///
/// Requests are for one thread. Answers come in the receive thread. ST_Close() may be called from
/// any thread, and ends whatever waits in another one within 100 ms, once the callback has
/// returned.
class ST_Client {
 public:
    /// Takes an answer, in the receive thread. @p record is a FaceInfoRecord, FaceImageAnswer or
    /// FaceInfoAndImageAnswer by @p kind, null for any other; it is freed right afterwards, so what
    /// is kept has to be copied.
    using ReceiveCallback = std::function<void(int kind, void* record)>;

    /// The longest address that is taken, in characters.
    static constexpr int kMaxAddress = 31;

    /// @p address is dotted IPv4. @p encrypt: 1 to exchange keys and encrypt, 0 otherwise.
    ST_Client(const char* address, int port, int encrypt);
    /// Closes. Not in the receive thread.
    ~ST_Client();
    ST_Client(const ST_Client&) = delete;
    ST_Client& operator=(const ST_Client&) = delete;

    /// Connects, within 10 seconds, and starts the receive thread. 0, or -1 with the reason
    /// printed. Ends a former connection.
    int ST_Connect();
    /// Ends the connection and joins the receive thread; called in that thread it only tells it to
    /// end. Requests fail from then on.
    void ST_Close();
    /// Whether the receive thread runs.
    bool isRunning() const { return running_; }
    /// Readable once the receive thread has ended by itself or was closed, until the next
    /// connection; for poll().
    int endDescriptor() const { return ended_.descriptor(); }

    /// To be called before ST_Connect().
    void ST_SetReceiveFunc(ReceiveCallback callback) { callback_ = std::move(callback); }
    void setCipherHooks(const CipherHooks& hooks) { hooks_ = hooks; }
    /// Whatever waits ends also when @p descriptor becomes readable; -1 for none.
    void setStopDescriptor(int descriptor) { stop_ = descriptor; }
    /// Without @p on, a server that is not there is not printed again.
    void setTellsFailure(bool on) { tellsFailure_ = on; }

    /// Sends @p data as one frame: its length and itself. 0, or -1 when the connection is of no use
    /// any more; a server that takes nothing for 10 seconds is.
    int ST_SendData(const unsigned char* data, int length);
    /// Exchanges keys; ST_Connect() does, before anything is received. The length of the session
    /// key, or less than 0: -1 no answer, -2 the answer is something else, -3 it is not whole.
    int ST_GetKey();
    /// Sends a request of the kinds FaceInfo or FaceInfoAndImage with @p length bytes of @p data.
    /// As ST_SendData().
    int ST_RequestFace(int kind, unsigned char type, std::uint32_t requestId,
                       std::uint64_t personKey, unsigned char option, int length,
                       const unsigned char* data);
    int ST_RequestFaceInfo(unsigned char type, std::uint32_t requestId, std::uint64_t personKey,
                           unsigned char option, int length, const unsigned char* data);
    int ST_RequestFaceInfoAndImage(unsigned char type, std::uint32_t requestId,
                                   std::uint64_t personKey, unsigned char option, int length,
                                   const unsigned char* data);
    /// Asks for the picture of the person with such an ID, of which 20 characters are sent.
    int ST_RequestFaceImage(unsigned char type, std::uint32_t requestId, const char* personId);

    /// Frees a record that the callback was given.
    static void ST_ReceiveFinish(int kind, void* record);

 private:
    bool openSocket();
    bool connectSocket() const;
    void endConnection();
    void pThreadFunc();
    /// Handles one message; false when there are no more.
    bool receive(int index);
    bool decrypt(std::vector<unsigned char>* payload) const;
    /// Puts @p data behind @p message as a frame; false when it cannot be sent.
    bool appendFrame(std::vector<unsigned char>* message, const unsigned char* data,
                     int length) const;
    int transmit(const std::vector<unsigned char>& message);
    bool readAll(unsigned char* to, std::size_t count, std::chrono::milliseconds patience) const;
    /// Waits for @p event of the socket, @p patience at most, -1 ms for ever.
    bool waitFor(short event, std::chrono::milliseconds patience) const;
    bool stopAsked() const;

    /// Ends all waiting as long as it lives.
    class Closing {
     public:
        explicit Closing(ST_Client* client);
        ~Closing();
        Closing(const Closing&) = delete;
        Closing& operator=(const Closing&) = delete;

     private:
        ST_Client* const client_;
    };

    char address_[kMaxAddress + 1];
    const int port_;
    const int encrypt_;
    CipherHooks hooks_;
    ReceiveCallback callback_;
    int stop_ = -1;
    bool tellsFailure_ = true;

    std::mutex life_;  // of the connection: held while one is made or ended
    std::mutex sending_;
    int socket_ = -1;                        // exchanged with both held
    std::vector<unsigned char> sessionKey_;  // with room for what a hook reads of it
    int sessionKeyLength_ = 0;
    std::thread receiver_;
    std::atomic<bool> running_{false};
    std::mutex closers_;
    int closersNow_ = 0;
    WakeDescriptor closing_;  // set while there are any
    WakeDescriptor ended_;
};
