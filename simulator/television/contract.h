/** The television's own object on its system bus. */
#pragma once

namespace simulator::television_contract {

inline constexpr auto bus_name = "org.velmora.Simulator.Television";
inline constexpr auto path = "/org/velmora/simulator/television";
inline constexpr auto interface = "org.velmora.Simulator.Television";

/*
 * Errors have the names org.velmora.Simulator.Error.NoSuchComponent, .RunsAlready, .DidNotStart, .NoSuchProcess,
 * .BadCommand and .NotWritten.
 */
inline constexpr auto introspection = R"xml(<node>
  <interface name="org.velmora.Simulator.Television">
    <method name="Components">
      <annotation name="org.gtk.GDBus.DocString" value="Every component and the command ('application'): its
        name, its state ('runs', 'ended with status 1', 'was killed by signal 9', 'was not started') and
        its process number inside, 0 when it does not run."/>
      <arg name="components" type="a(ssi)" direction="out"/>
    </method>
    <method name="Start">
      <annotation name="org.gtk.GDBus.DocString" value="Starts a component that has ended, and waits until it
        is ready. NoSuchComponent, RunsAlready, DidNotStart."/>
      <arg name="component" type="s" direction="in"/>
    </method>
    <method name="Kill">
      <annotation name="org.gtk.GDBus.DocString" value="Kills (SIGKILL) every process of that name
        inside; a component of the television has then ended. NoSuchProcess."/>
      <arg name="program" type="s" direction="in"/>
    </method>
    <method name="Run">
      <annotation name="org.gtk.GDBus.DocString" value="Runs a command inside to its end, with
        additional environment variables (NAME=VALUE) and three descriptors: standard input, output and
        error. When the caller leaves the bus before, it is killed with all that it started. The answer is
        its status as a shell says it. BadCommand."/>
      <arg name="command" type="as" direction="in"/><arg name="environment" type="as" direction="in"/>
      <arg name="descriptors" type="ah" direction="in"/><arg name="status" type="i" direction="out"/>
    </method>
    <method name="SetLanguage">
      <annotation name="org.gtk.GDBus.DocString" value="Writes the language into the television's
        settings. NotWritten."/>
      <arg name="language" type="s" direction="in"/>
    </method>
    <method name="Logs">
      <annotation name="org.gtk.GDBus.DocString" value="The names of the logs in /var/log/simulator,
        without .log."/>
      <arg name="names" type="as" direction="out"/>
    </method>
    <method name="End">
      <annotation name="org.gtk.GDBus.DocString" value="Ends the television in order."/>
    </method>
    <signal name="ComponentEnded">
      <annotation name="org.gtk.GDBus.DocString" value="A component has ended by itself, and how."/>
      <arg name="component" type="s"/><arg name="how" type="s"/>
    </signal>
  </interface>
</node>)xml";

} // namespace simulator::television_contract
