#include "screens/users/user_enroll.h"

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/record_values.h"

void UserEnroll::built() {
    connect(ui_->authCardOnlyRow, &ListRow::touched, this, &UserEnroll::enrollCardOnly);
    connect(ui_->authFaceOnlyRow, &ListRow::touched, this, &UserEnroll::enrollFaceOnly);
    connect(ui_->authFaceOrCardRow, &ListRow::touched, this, &UserEnroll::enrollFaceOrCard);
    connect(ui_->authFaceAndCardRow, &ListRow::touched, this, &UserEnroll::enrollFaceAndCard);
    connect(ui_->authFaceAndIDRow, &ListRow::touched, this, &UserEnroll::enrollFaceAndID);
}

void UserEnroll::windowInEvent() {
    FormScreen::windowInEvent();
    // Whoever comes back finds their choice.
    choose(flow().isRunning() ? flow().mode() : shell()->menuRecord().setup.authMethod);
}

void UserEnroll::enrollCardOnly() {
    choose(AuthMethod::Card);
}

void UserEnroll::enrollFaceOnly() {
    choose(AuthMethod::Face);
}

void UserEnroll::enrollFaceOrCard() {
    choose(AuthMethod::FaceOrCard);
}

void UserEnroll::enrollFaceAndCard() {
    choose(AuthMethod::FaceAndCard);
}

void UserEnroll::enrollFaceAndID() {
    choose(AuthMethod::FaceAndId);
}

void UserEnroll::choose(int mode) {
    setFlow(EnrolFlow::choice(mode));
    showFlow();
    int row = 0;
    for (ListRow* one : {ui_->authCardOnlyRow, ui_->authFaceOnlyRow, ui_->authFaceOrCardRow,
                         ui_->authFaceAndCardRow, ui_->authFaceAndIDRow})
        one->setSelected(row++ == flow().mode());
}

void UserEnroll::nextButtonTouch() {
    if (!shell()->canChangeWindow())
        return;
    _gui_user_ nobody{};
    nobody.level = UserLevel::General;
    setUser(nobody);
    shell()->changeWindow(screen_title::kEnrolQualification, flow().mode());
}
