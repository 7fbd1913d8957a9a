package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotEquals;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.ModelObjects.Family;
import java.lang.reflect.Modifier;
import java.util.Arrays;
import java.util.List;
import java.util.Set;
import java.util.stream.Collectors;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.MethodSource;

class ModelEqualityTest {
    static List<Family> families() {
        return ModelObjects.families();
    }

    @ParameterizedTest
    @MethodSource("families")
    void objectsWithTheSameValuesAreEqualAndHashEqually(Family family) {
        Object one = family.filled().get();
        Object other = family.filled().get();

        assertEquals(one, other);
        assertEquals(one.hashCode(), other.hashCode());
        assertEquals(one.toString(), other.toString());
    }

    @ParameterizedTest
    @MethodSource("families")
    void everySingleFieldMakesADifference(Family family) {
        Set<String> fields = Arrays.stream(family.filled().get().getClass().getDeclaredFields())
                .filter(field -> !Modifier.isStatic(field.getModifiers()))
                .map(field -> field.getName())
                .collect(Collectors.toSet());

        assertEquals(fields, family.changed().keySet());
        family.changed().forEach((field, changed) -> assertNotEquals(family.filled().get(), changed.get(), field));
    }

    @ParameterizedTest
    @MethodSource("families")
    void nothingElseIsEqual(Family family) {
        assertNotEquals(family.filled().get(), null);
        assertNotEquals(family.filled().get(), new Object());
    }
}
