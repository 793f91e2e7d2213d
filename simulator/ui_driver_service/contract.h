/** The ui_driver's object on the television's system bus. */
#pragma once

namespace simulator::ui_contract {

inline constexpr auto bus_name = "org.velmora.Simulator.Ui";
inline constexpr auto path = "/org/velmora/simulator/ui";
inline constexpr auto interface = "org.velmora.Simulator.Ui";

/*
 * The screen is that of the first application on the accessibility bus. The first call that reads it says
 * that a screen reader is there; every such call waits up to five seconds until something can be read.
 *
 * Errors have the names org.velmora.Simulator.Error.NotSeen (its text says what the screen shows), .NoSuchKey,
 * .NoAction and .NotWritten.
 */
inline constexpr auto introspection = R"xml(<node>
  <interface name="org.velmora.Simulator.Ui">
    <method name="Press">
      <annotation name="org.gtk.GDBus.DocString" value="Presses and releases keys, one after the other: OK,
        Back, Exit and Red of the remote control, Up, Down, Left, Right and every other name of an X key; 'Right*5'
        is pressed five times. NoSuchKey: one is unknown, and none was pressed."/>
      <arg name="keys" type="as" direction="in"/>
    </method>
    <method name="Hold">
      <annotation name="org.gtk.GDBus.DocString" value="Holds a key down for a time. NoSuchKey."/>
      <arg name="key" type="s" direction="in"/><arg name="milliseconds" type="u" direction="in"/>
    </method>
    <method name="See">
      <annotation name="org.gtk.GDBus.DocString" value="What the screen says, on one line in reading order, the
        focus in brackets. NotSeen: nothing can be read."/>
      <arg name="screen" type="s" direction="out"/>
    </method>
    <method name="Screen">
      <annotation name="org.gtk.GDBus.DocString" value="The widgets in reading order: name, role, focusable,
        focused, enabled, x, y, width and height in pixels, for one that shows a number also value, lowest and
        highest, and parent, the index of the dialog that it is in, or -1. Behind an open dialog nothing is
        listed. NotSeen: nothing can be read."/>
      <arg name="widgets" type="aa{sv}" direction="out"/>
    </method>
    <method name="Focus">
      <annotation name="org.gtk.GDBus.DocString" value="The name of the widget that has the focus, empty when
        none has. NotSeen: nothing can be read."/>
      <arg name="name" type="s" direction="out"/>
    </method>
    <method name="Wait">
      <annotation name="org.gtk.GDBus.DocString" value="Waits until a widget has this name, and says then what
        See says. NotSeen."/>
      <arg name="text" type="s" direction="in"/><arg name="milliseconds" type="u" direction="in"/>
      <arg name="screen" type="s" direction="out"/>
    </method>
    <method name="WaitGone">
      <annotation name="org.gtk.GDBus.DocString" value="The same, until no widget has this name."/>
      <arg name="text" type="s" direction="in"/><arg name="milliseconds" type="u" direction="in"/>
      <arg name="screen" type="s" direction="out"/>
    </method>
    <method name="WaitFocus">
      <annotation name="org.gtk.GDBus.DocString" value="The same, until the widget of this name has the focus."/>
      <arg name="name" type="s" direction="in"/><arg name="milliseconds" type="u" direction="in"/>
      <arg name="screen" type="s" direction="out"/>
    </method>
    <method name="WaitNumber">
      <annotation name="org.gtk.GDBus.DocString" value="The same, until the focused widget shows this number."/>
      <arg name="value" type="i" direction="in"/><arg name="milliseconds" type="u" direction="in"/>
      <arg name="screen" type="s" direction="out"/>
    </method>
    <method name="Activate">
      <annotation name="org.gtk.GDBus.DocString" value="Presses a widget as a screen reader does, by its
        accessible action. NotSeen: it is not there. NoAction: it cannot be pressed."/>
      <arg name="name" type="s" direction="in"/>
    </method>
    <method name="Picture">
      <annotation name="org.gtk.GDBus.DocString" value="Writes a PNG picture of the screen into a file, once two
        looks 100 ms apart are the same, at most after two seconds. NotWritten."/>
      <arg name="file" type="h" direction="in"/>
    </method>
  </interface>
</node>)xml";

} // namespace simulator::ui_contract
