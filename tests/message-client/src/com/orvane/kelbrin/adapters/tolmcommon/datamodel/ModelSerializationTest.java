package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.io.ByteArrayInputStream;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.InvalidObjectException;
import java.io.ObjectInputStream;
import java.io.ObjectOutputStream;
import java.lang.reflect.Field;
import java.util.ArrayList;
import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.MethodSource;

class ModelSerializationTest {
    static List<Object> objects() {
        return ModelObjects.objects();
    }

    @ParameterizedTest
    @MethodSource("objects")
    void whatComesOutOfAStreamEqualsWhatWentIn(Object object) throws Exception {
        Object read = read(written(object));

        assertEquals(object, read);
        assertEquals(object.hashCode(), read.hashCode());
        assertEquals(object.toString(), read.toString());
    }

    @Test
    void aReadObjectCanBeFilledFurtherWithoutChangingItsOriginal() throws Exception {
        BaseSample sample = new BaseSample(5);
        sample.putMetric(new BaseMetric("one"));

        BaseSample read = (BaseSample) read(written(sample));
        read.putMetric(new BaseMetric("two"));

        assertEquals(List.of(new BaseMetric("one"), new BaseMetric("two")), read.getMetrics());
        assertEquals(List.of(new BaseMetric("one")), sample.getMetrics());
    }

    @Test
    void aStreamWithoutAListIsRefused() throws Exception {
        BaseSample sample = new BaseSample(5);
        set(sample, "metrics", null);

        assertThrows(InvalidObjectException.class, () -> read(written(sample)));
    }

    @Test
    void aStreamWithSomethingElseInAListIsRefused() throws Exception {
        BaseSample sample = new BaseSample(5);
        set(sample, "metrics", new ArrayList<>(List.of("no metric")));

        assertThrows(InvalidObjectException.class, () -> read(written(sample)));
    }

    @Test
    void aStreamCannotKeepAHandOnAnObjectsList() throws Exception {
        BaseSample sample = new BaseSample(5);
        ArrayList<Metric> kept = new ArrayList<>();
        set(sample, "metrics", kept);

        Object[] read = (Object[]) read(written(new Object[] {sample, kept}));
        @SuppressWarnings("unchecked")
        List<Metric> streamsOwn = (List<Metric>) read[1];
        streamsOwn.add(new BaseMetric("slipped in"));

        assertEquals(List.of(), ((BaseSample) read[0]).getMetrics());
    }

    private static void set(Object object, String field, Object value) throws ReflectiveOperationException {
        Field place = object.getClass().getDeclaredField(field);
        place.setAccessible(true);
        place.set(object, value);
    }

    private static byte[] written(Object object) throws IOException {
        ByteArrayOutputStream bytes = new ByteArrayOutputStream();
        try (ObjectOutputStream out = new ObjectOutputStream(bytes)) {
            out.writeObject(object);
        }
        return bytes.toByteArray();
    }

    private static Object read(byte[] bytes) throws IOException, ClassNotFoundException {
        try (ObjectInputStream in = new ObjectInputStream(new ByteArrayInputStream(bytes))) {
            return in.readObject();
        }
    }
}
