/** The D-Bus names of the NCP host; interfaces/org.orvane.qm_ncp_host.service.xml describes it. */
#pragma once

namespace simulator::contract {

inline constexpr auto bus_name = "org.orvane.qm_ncp_host";
inline constexpr auto service_path = "/org/orvane/qm_ncp_host";
inline constexpr auto service_interface = "org.orvane.qm_ncp_host.service";
inline constexpr auto event_signal = "ncp_event";
inline constexpr auto statistics_method = "ember_get_rx_statistics";

} // namespace simulator::contract
