// SPDX-License-Identifier: MIT
// The camera's network interfaces.

#include "vcamera/model/interfaces.h"

#include <net/if.h>

int find_interface(const camera_state& state, const std::string& name) {
    for (int i = 0; i < MTK_VIFS; ++i) {
        if (!name.empty() && name == state.interfaces[i])
            return i;
    }
    return no_interface;
}

const char* name_of_index(const camera_state& state, unsigned index) {
    const bool known = index >= 1 && index <= MTK_VIFS && state.interfaces[index - 1][0] != '\0';
    return known ? state.interfaces[index - 1] : nullptr;
}

bool carries_data(const camera_state& state, int interface) {
    if (name_of_index(state, static_cast<unsigned>(index_of(interface))) == nullptr)
        return false;
    return joined(state, interface) != nullptr &&
           (state.adapter == adapter_family::mediatek ||
            state.supplicant.step == supplicant_step::completed);
}

short interface_flags(const camera_state& state, int interface) {
    const bool up = state.adapter == adapter_family::mediatek ? state.mtk.vifs[interface].up
                                                              : state.realtek.vifs[interface].up;
    const bool carrier = carries_data(state, interface);
    return static_cast<short>(IFF_BROADCAST | IFF_MULTICAST | (up ? IFF_UP : 0) |
                              (carrier ? IFF_RUNNING : 0));
}

void bring(camera_state& state, int interface, bool up) {
    if (state.adapter == adapter_family::mediatek) {
        mtk_radio_bring(&state.mtk, &state.air, interface, up);
    } else {
        if (interface == REALTEK_STATION && !up)
            supplicant_bring(state, up);
        realtek_radio_bring(state.realtek, interface, up);
        if (interface == REALTEK_STATION && up)
            supplicant_bring(state, up);
    }
    show_operstate(state, interface, scratch_folder());
}

const access_point* joined(const camera_state& state, int interface) {
    const int number = state.adapter == adapter_family::mediatek
                           ? state.mtk.vifs[interface].joined
                           : state.realtek.vifs[interface].joined;
    return number == 0 ? nullptr : &state.air.points[number - 1];
}
