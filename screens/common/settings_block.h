#pragma once

#include "link/device_records.h"

/// Where the blocks of settings lie in the record, by their type, so that whoever names a field of
/// a block has named its place.
namespace settings_block {

template <class Block>
struct Place;

template <>
struct Place<_gui_menu_> {
    template <class Record>
    static auto& in(Record& record) {
        return record;
    }
};

#define ZEL_SETTINGS_BLOCK(Block, place)  \
    template <>                           \
    struct Place<Block> {                 \
        template <class Record>           \
        static auto& in(Record& record) { \
            return record.place;          \
        }                                 \
    };
ZEL_SETTINGS_BLOCK(DdnsBlock, ddns)
ZEL_SETTINGS_BLOCK(RegistrationBlock, registration)
ZEL_SETTINGS_BLOCK(FaceBlock, face)
ZEL_SETTINGS_BLOCK(SoundBlock, sound)
ZEL_SETTINGS_BLOCK(ScreenBlock, screen)
ZEL_SETTINGS_BLOCK(SetupBlock, setup)
ZEL_SETTINGS_BLOCK(NetworkBlock, network)
ZEL_SETTINGS_BLOCK(AddressBlock, network.own)
ZEL_SETTINGS_BLOCK(OperationBlock, operation)
#undef ZEL_SETTINGS_BLOCK

template <class Block, class Record>
auto& in(Record& record) {
    return Place<Block>::in(record);
}

}  // namespace settings_block
