#pragma once

/// The driver's method of automatic channel selection that an access point without a fixed channel
/// uses.
constexpr int access_point_channel_algorithm = 2;
