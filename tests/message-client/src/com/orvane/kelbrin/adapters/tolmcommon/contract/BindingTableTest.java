package com.orvane.kelbrin.adapters.tolmcommon.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.Metric;
import java.lang.invoke.MethodType;
import java.lang.reflect.Constructor;
import java.lang.reflect.Method;
import java.nio.file.Path;
import java.util.Enumeration;
import java.util.HashSet;
import java.util.Map;
import java.util.Set;
import java.util.TreeSet;
import java.util.jar.JarEntry;
import java.util.jar.JarFile;
import java.util.stream.Collectors;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;

/** The library's binding table and the archive, each held against the other. */
class BindingTableTest {
    private static final String RUNTIMES_OWN = "java.util.HashMap";
    private static final Set<String> OF_EVERY_OBJECT = Set.of("equals", "hashCode", "toString");

    private static Map<String, Set<String>> table;

    @BeforeAll
    static void readTable() throws Exception {
        table = BindingTable.read(Path.of(System.getProperty("telvar.bindingTable")));
    }

    @Test
    void theTableIsReadWhole() {
        assertEquals(10, table.size());
        assertEquals(51, table.values().stream().mapToInt(Set::size).sum());
    }

    @Test
    void theArchiveOffersExactlyTheTablesRows() throws Exception {
        for (String className : table.keySet()) {
            if (!className.equals(RUNTIMES_OWN)) {
                assertEquals(table.get(className), offered(Class.forName(className)), className);
            }
        }
    }

    @Test
    void theRuntimesMapOffersTheTablesRows() throws Exception {
        assertTrue(offered(Class.forName(RUNTIMES_OWN)).containsAll(table.get(RUNTIMES_OWN)));
    }

    @Test
    void everyClassOfTheModelThatCanBeMadeIsInTheTable() throws Exception {
        Set<String> makable = new HashSet<>();
        try (JarFile archive = new JarFile(System.getProperty("telvar.archive"))) {
            String folder = Metric.class.getPackageName().replace('.', '/') + "/";
            for (Enumeration<JarEntry> entries = archive.entries(); entries.hasMoreElements();) {
                String name = entries.nextElement().getName();
                if (name.startsWith(folder) && name.endsWith(".class")) {
                    Class<?> type = Class.forName(name.replace(".class", "").replace('/', '.'));
                    if (type.getConstructors().length > 0) {
                        makable.add(type.getName());
                    }
                }
            }
        }

        assertEquals(table.keySet().stream().filter(name -> name.startsWith(Metric.class.getPackageName()))
                .collect(Collectors.toSet()), makable);
    }

    /** All that is public, save what only tells of the object. */
    private static Set<String> offered(Class<?> type) {
        Set<String> offered = new TreeSet<>();
        for (Constructor<?> constructor : type.getConstructors()) {
            offered.add("<init> " + MethodType.methodType(void.class, constructor.getParameterTypes())
                    .toMethodDescriptorString());
        }
        for (Method method : type.getMethods()) {
            if (method.getDeclaringClass() != Object.class && !OF_EVERY_OBJECT.contains(method.getName())
                    && !isGetter(method)) {
                offered.add(method.getName() + " " + MethodType
                        .methodType(method.getReturnType(), method.getParameterTypes()).toMethodDescriptorString());
            }
        }
        return offered;
    }

    private static boolean isGetter(Method method) {
        boolean named = method.getName().startsWith("get") || method.getName().startsWith("is");
        return named && method.getParameterCount() == 0 && method.getReturnType() != void.class;
    }
}
