# Counts the objects that EFL keeps in the program that is being looked at.
set $objects = ((void *(*)(void)) eo_objects_iterator_new)()
set $object = (void **) ((void *(*)(unsigned long)) malloc)(8)
set $count = 0
while ((unsigned char (*)(void *, void **)) eina_iterator_next)($objects, $object)
set $count = $count + 1
end
call ((void (*)(void *)) eina_iterator_free)($objects)
call ((void (*)(void *)) free)($object)
printf "%d objects\n", $count
