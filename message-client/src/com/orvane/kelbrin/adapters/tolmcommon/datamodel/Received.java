package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import java.io.InvalidObjectException;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/**
 * Collections out of a stream, made into the reader's own. A stream decides what it puts into a field: elements of
 * another type, none, or a collection that the stream refers to once more and that would change behind the object's
 * back.
 */
final class Received {
    private Received() {
    }

    static <T> ArrayList<T> list(List<T> received, Class<T> elementType) throws InvalidObjectException {
        ArrayList<T> own = new ArrayList<>();
        for (Object element : present(received)) {
            own.add(checked(element, elementType));
        }
        return own;
    }

    static LinkedHashMap<String, String> texts(Map<String, String> received) throws InvalidObjectException {
        LinkedHashMap<String, String> own = new LinkedHashMap<>();
        for (Map.Entry<?, ?> entry : present(received).entrySet()) {
            own.put(textOrNull(entry.getKey()), textOrNull(entry.getValue()));
        }
        return own;
    }

    private static String textOrNull(Object value) throws InvalidObjectException {
        return value == null ? null : checked(value, String.class);
    }

    private static <C> C present(C collection) throws InvalidObjectException {
        if (collection == null) {
            throw new InvalidObjectException("a collection is missing");
        }
        return collection;
    }

    private static <T> T checked(Object value, Class<T> type) throws InvalidObjectException {
        if (!type.isInstance(value)) {
            throw new InvalidObjectException("a collection holds something else than a " + type.getSimpleName());
        }
        return type.cast(value);
    }
}
