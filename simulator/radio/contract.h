/** The radio module's object on the television's system bus. */
#pragma once

namespace simulator::radio_contract {

inline constexpr auto bus_name = "org.velmora.Simulator.RadioModule";
inline constexpr auto path = "/org/velmora/simulator/radio_module";
inline constexpr auto interface = "org.velmora.Simulator.RadioModule";

/* The one error has the name org.velmora.Simulator.Error.NoSuchTraffic. */
inline constexpr auto introspection = R"xml(<node>
  <interface name="org.velmora.Simulator.RadioModule">
    <method name="State">
      <annotation name="org.gtk.GDBus.DocString" value="The radio's mode (off, tx or rx), channel, power, stream
        (it sends one), received (packets since the test or the last reset began) and packets_per_second (heard
        now), and the module's serial (the device is there) and speed."/>
      <arg name="state" type="a{sv}" direction="out"/>
    </method>
    <method name="SetSerial">
      <annotation name="org.gtk.GDBus.DocString" value="Lets the serial device /dev/ttyIOT appear or disappear."/>
      <arg name="present" type="b" direction="in"/>
    </method>
    <method name="SetTraffic">
      <annotation name="org.gtk.GDBus.DocString" value="From now on so many packets arrive on a channel, 0 is
        silence. NoSuchTraffic: there is no such channel or rate."/>
      <arg name="channel" type="i" direction="in"/><arg name="packets_per_second" type="i" direction="in"/>
    </method>
  </interface>
</node>)xml";

} // namespace simulator::radio_contract
