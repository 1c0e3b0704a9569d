#include "sim/interfaces.h"

int find_interface(const camera_state& state, const std::string& name) {
    for (int i = 0; i < MTK_VIFS; ++i)
        if (!name.empty() && name == state.interfaces[i])
            return i;
    return no_interface;
}

void bring(camera_state& state, int interface, bool up) {
    if (state.adapter == adapter_family::mediatek)
        mtk_radio_bring(&state.mtk, &state.air, interface, up);
    else
        realtek_radio_bring(state.realtek, interface, up);
    show_operstate(state, interface, scratch_folder());
}

const access_point* joined(const camera_state& state, int interface) {
    const int number = state.adapter == adapter_family::mediatek
                           ? state.mtk.vifs[interface].joined
                           : state.realtek.vifs[interface].joined;
    return number == 0 ? nullptr : &state.air.points[number - 1];
}
