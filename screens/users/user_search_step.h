#pragma once

#include <QByteArray>
#include <QMetaType>
#include <cstdint>

#include "screens/common/device_request.h"
#include "screens/common/screen_popup.h"
#include "screens/common/titled_form.h"
#include "ui/visible_timer.h"

class TextLine;

/// What a search has come to, as the person's screen is given it.
struct UserSearchOutcome {
    std::uint8_t result = 0;  // 0: found; command::asks::NothingTagged: the time was over
    std::uint8_t type = 0;    // one of command::search
    QByteArray record;        // _gui_user_, when found
};
Q_DECLARE_METATYPE(UserSearchOutcome)

/// A screen on which a user is searched for in one way. It waits for what the controller finds and
/// leads on to the person's screen with it; left before, it has the search given up.
class UserSearchStep : public TitledForm {
    Q_OBJECT

 public:
    UserSearchStep(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void windowOutEvent() override;
    /// Takes the controller's answer as well, which UserSearch hands on.
    void deviceAnswer(const DeviceMessage& message) override;
    /// Whether it waits for an answer of the search @p type.
    bool searches(std::uint8_t type) const { return request_.isWaiting() && type == this->type(); }
    void searchResult(std::uint8_t result, const QByteArray& record);

 protected:
    /// Numbers of the popups that all these screens have.
    enum Popup { NoConnection = 1001, NoAnswer };
    static constexpr int kSearchSeconds = 20;

    /// One of command::search.
    virtual std::uint8_t type() const = 0;
    /// Called when the search is over without an answer, or the link is.
    virtual void notFound(DeviceRequest::Failure why);
    /// Whether @p record is of somebody who was searched for; a late answer may not be.
    virtual bool isAnswer(const QByteArray& /*record*/) const { return true; }
    /// Says so for @p seconds and goes back.
    void leadBack(int number, int seconds);
    /// Has the controller give the search up.
    virtual void giveUp() {}

    /// Waits for the search to end; @p seconds are counted down on @p line if there is one.
    void await(int seconds, TextLine* line = nullptr);
    void stopSearching();
    DeviceRequest& request() { return request_; }
    ScreenPopup& popup() { return popup_; }

 private:
    void showSeconds();

    DeviceRequest request_;
    ScreenPopup popup_;
    VisibleTimer second_;
    TextLine* line_ = nullptr;
    int left_ = 0;
};
