package telvar.test;

/** Returns texts that are hard to hand over. */
public class Texts {
    public String plain() {
        return "plain";
    }

    public String empty() {
        return "";
    }

    public String none() {
        return null;
    }

    public String withZero() {
        return "before\0after";
    }

    public String outsideTheBasicPlane() {
        return "\uD83D\uDE00";
    }

    public String loneSurrogate() {
        return "a\uD83Db";
    }

    public String megabyte() {
        return "x".repeat(1_000_000);
    }

    public String throwing() {
        throw new IllegalStateException("no text");
    }
}
