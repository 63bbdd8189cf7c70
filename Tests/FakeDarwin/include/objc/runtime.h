#pragma once

// The few names of the Objective-C run time that the Darwin sources use, for hosts without one.

typedef struct objc_class* Class;
typedef struct objc_object* id;
typedef struct objc_selector* SEL;
typedef bool BOOL;

extern "C" {

Class objc_getClass(const char* name);
SEL sel_registerName(const char* name);
BOOL class_respondsToSelector(Class type, SEL message);

}  // extern "C"
