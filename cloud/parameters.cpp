#include "cloud/parameters.h"

void registerCloudTypes() {
    qRegisterMetaType<FR01_Parameter>();
    qRegisterMetaType<FR21_Parameter>();
    qRegisterMetaType<FR33_3_Parameter>();
    qRegisterMetaType<FR36_Parameter>();
    qRegisterMetaType<FR44_Parameter>();
    qRegisterMetaType<FR51_Parameter>();
    qRegisterMetaType<Device_Setup_Parameter>();
    qRegisterMetaType<SystemEvent_Parameter>();
    qRegisterMetaType<DoReceiveUserData>();
    qRegisterMetaType<Parameter_UserData>();
    qRegisterMetaType<ProcIDX>();
}
